#include "pbrctl/TreeWatch.h"

#include "pbrctl/EntityWatcher.h"

namespace Pbrctl {

std::string Change::path() const {
  std::string const to = entity.empty() ? attribute : entity + "." + attribute;
  return key ? to + "[" + *key + "]" : to;
}

char const* kindName(Change::Kind kind) {
  switch (kind) {
  case Change::Kind::added:
    return "added";
  case Change::Kind::removed:
    return "removed";
  case Change::Kind::set:
    break;
  }
  return "set";
}

TreeWatch::TreeWatch(Vyx::Ptr<Vyx::Entity> const& root, ChangeSink sink, std::string path)
    : sink_(std::move(sink)), root_(std::make_unique<EntityWatcher>(root->fwkType()->genericIf(root), sink_,
                                                                    std::move(path), nullptr)) {}

TreeWatch::~TreeWatch() = default;

} // namespace Pbrctl
