#include "Vyx/NboAttrLog/Roots.h"

namespace Vyx::NboAttrLog {

char const* wordOf(MountMode mode) {
  switch (mode) {
  case MountMode::read:
    return "read";
  case MountMode::write:
    return "write";
  case MountMode::publish:
    return "publish";
  }
  return "unknown";
}

Roots::Roots(Refusal refusal) : refusal_(std::move(refusal)), dir_(ptrFromNew(new Dir("roots"))) {}

void Roots::offerIs(Name const& path, Ptr<Entity> const& root) { offers_[path] = root; }

VyxType const* Roots::accepted(Name const& path) const {
  auto const found = accepted_.find(path);
  return found == accepted_.end() ? nullptr : found->second;
}

Ptr<Entity> Roots::offered(Name const& path) const {
  if (auto const own = offers_.find(path); own != offers_.end()) return own->second;
  Dir::Entry const* entry = accepted(path) ? dir_->find(path) : nullptr;
  return entry ? entry->entity() : nullptr;
}

std::string Roots::refusal(Link const& link, Name const& path, MountMode mode) const {
  bool const known = mode == MountMode::publish ? accepted(path) != nullptr : knows(path);
  if (!known) return "there is no root \"" + std::string(path.view()) + "\" to " + wordOf(mode);
  return refusal_ ? refusal_(link, path, mode) : std::string();
}

Ptr<Entity> Roots::takeLost(std::string const& made) {
  auto const found = lost_.find(made);
  if (found == lost_.end()) return {};
  Ptr<Entity> const entity = found->second;
  lost_.erase(found);
  return entity;
}

} // namespace Vyx::NboAttrLog
