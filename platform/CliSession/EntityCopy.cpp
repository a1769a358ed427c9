// The copy of entities attribute by attribute, from the record of their type.
//
// Invariants:
// (1) Only what differs is written, so that reactors hear of differences alone.
// (2) An entity whose type has a handler is copied by that handler, wherever in the tree it is met.

#include "Cli/Session.h"

#include "Vyx/AskFor.h"
#include "Vyx/GenericIf.h"

#include <typeinfo>

namespace Cli::Session {

namespace {

// The nearest type that both entities are of; null for entities of different lines.
Vyx::VyxType const* commonType(Vyx::Entity const& dest, Vyx::Entity const& src) {
  Vyx::VyxType const* type = src.fwkType();
  if (typeid(dest) == typeid(src)) return type;
  Vyx::VyxType const* const other = dest.fwkType();
  while (type && !other->isA(type)) type = type->baseType();
  return type;
}

// RETURNS the handler that copies entities of that type; null when there is none.
Vyx::Ptr<EntityCopyHandler> handlerOf(EntityCopyCustomHandlerTable const* table, Vyx::Entity const& entity) {
  if (!table || table->entrys() == 0) return {};
  auto const entry = table->entry(entity.fwkType()->fullTypeName());
  return entry ? entry->handler() : Vyx::Ptr<EntityCopyHandler>();
}

// A copy reads all of an entity, a little at each attribute. In a tree that is larger than the caches it
// would wait for each piece apart.
constexpr std::size_t kEntityBytes = 4 * Vyx::kCacheLine;

// One copy on its way down the tree.
class Descent final : public Vyx::EntityCopier {
public:
  Descent(EntityCopy& copy, AttributeFilter const* filter) : copy_(copy), filter_(filter) {}

  bool copyEntity(Vyx::Entity& dest, Vyx::Entity const& src) override {
    if (auto const handler = handlerOf(copy_.handlerTable().ptr(), src))
      return handler->handleEntity(&copy_, &dest, &src, src.fullName());
    return copyAttributes(dest, src);
  }

  bool copyAttributes(Vyx::Entity& dest, Vyx::Entity const& src) {
    Vyx::askFor(&src, kEntityBytes);
    Vyx::askFor(&dest, kEntityBytes);
    Vyx::VyxType const* type = commonType(dest, src);
    if (!type) return false;
    bool changed = false;
    for (Vyx::VyxAttr const* attr : type->copiedAttributes()) {
      if (filter_ && !filter_->accepts(type->fullTypeName(), attr->name())) continue;
      changed = attr->ops()->copy(dest, src, *this) || changed;
    }
    return changed;
  }

private:
  EntityCopy& copy_;
  AttributeFilter const* filter_;
};

} // namespace

// RETURNS whether anything was written. `path` names the place for handlers and traces; the copy of
// attributes doesn't need it. Entities of different lines have no attribute in common, and neither has a null
// one.
bool EntityCopy::doCopyEntityAttrs(Vyx::Ptr<Vyx::Entity> const& dest, Vyx::Ptr<Vyx::Entity const> const& src,
                                   Vyx::String8, Vyx::Ptr<AttributeFilter const> const& filter) {
  if (!dest || !src) return false;
  bool const changed = Descent(*this, filter.ptr()).copyAttributes(*dest, *src);
  if (changed) changesIs(changes() + 1);
  return changed;
}

// The same, but for an entity whose type has a handler: that one copies it.
bool EntityCopy::copyEntity(Vyx::Ptr<Vyx::Entity> const& dest, Vyx::Ptr<Vyx::Entity const> const& src,
                            Vyx::String8 path, Vyx::Ptr<AttributeFilter const> const& filter) {
  if (!dest || !src) return false;
  if (auto const handler = handlerOf(handlerTable().ptr(), *src))
    return handler->handleEntity(this, dest, src, path);
  return doCopyEntityAttrs(dest, src, path, filter);
}

} // namespace Cli::Session
