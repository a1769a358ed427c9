#include "pbrctl/TreeWatch.h"

#include "pbrctl/RootWatches.h"

namespace Pbrctl {

namespace {

Reactor watchRootOf(Vyx::Ptr<Vyx::Entity> const& root, ChangeSink const& sink, std::string path) {
  if (auto const config = Vyx::dynamicPtrCast<Pbr::Config>(root))
    return watchConfig(*config, sink, std::move(path));
  if (auto const status = Vyx::dynamicPtrCast<Pbr::Status>(root))
    return watchStatus(*status, sink, std::move(path));
  if (auto const checkpoint = Vyx::dynamicPtrCast<Pbr::CheckpointStatus>(root))
    return watchCheckpoint(*checkpoint, sink, std::move(path));
  return {};
}

} // namespace

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
    : sink_(std::move(sink)), reactor_(watchRootOf(root, sink_, std::move(path))) {}

TreeWatch::~TreeWatch() = default;

} // namespace Pbrctl
