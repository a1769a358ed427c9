#include "Cli/Session.h"

namespace Cli::Session {

// A handler that says nothing else copies attribute by attribute.
bool EntityCopyHandler::handleEntity(Vyx::Ptr<EntityCopy> const& ec, Vyx::Ptr<Vyx::Entity> const& dest,
                                     Vyx::Ptr<Vyx::Entity const> const& src, Vyx::String8 path) {
  return ec->doCopyEntityAttrs(dest, src, path, nullptr);
}

// The destination's entity that stands for the source's: the one given.
Vyx::Ptr<Vyx::Entity> EntityCopyHandler::resolveEntityPtr(Vyx::Ptr<EntityCopy> const&,
                                                          Vyx::Ptr<Vyx::Entity> const& dest,
                                                          Vyx::Ptr<Vyx::Entity const> const&) {
  return dest;
}

} // namespace Cli::Session
