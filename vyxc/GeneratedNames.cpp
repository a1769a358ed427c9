#include "GeneratedNames.h"

#include "Namer.h"

namespace vyxc {

std::vector<std::string> generatedNames(Attribute const& attribute) {
  auto const& name = attribute.name;
  std::vector<std::string> result{name, Namer::attribute(name)};
  if (attribute.kind == AttributeKind::kFunction || attribute.kind == AttributeKind::kConst) return result;
  result.push_back(Namer::setter(name));
  if (attribute.kind == AttributeKind::kMutable || attribute.kind == AttributeKind::kReference) return result;
  result.push_back(Namer::del(name));
  result.push_back(Namer::make(name));
  if (attribute.kind == AttributeKind::kChild) return result;
  for (auto const& more :
       {Namer::plural(name), Namer::notify(name), Namer::iteratorFrom(name), Namer::iteratorConstFrom(name),
        Namer::iterator(name), Namer::iteratorConst(name), Namer::record(name), Namer::map(name),
        attribute.kind == AttributeKind::kQueue ? Namer::enqueue(name) : Namer::delAll(name)}) {
    result.push_back(more);
  }
  if (attribute.kind == AttributeKind::kQueue) result.push_back(Namer::dequeue(name));
  return result;
}

} // namespace vyxc
