#include "Vyx/Entity.h"

#include "Vyx/GenericIfEntity.h"
#include "Vyx/PathPiece.h"
#include "Vyx/StreamAdapter.h"

#include <string>

namespace Vyx {

namespace {

// The text of the key under which the entity stands in its parent's collection; empty in a single attribute.
String8 keyText(Entity const& entity, VyxAttr const& attr) {
  if (!attr.keyAttr()) return {};
  GenericIfEntity self{Ptr<Entity const>(&entity)};
  Ptr<GenericIf> key =
      self.attributeOp({attr.keyAttr()->id(), GenericIf::AttributeOp::read}, Ptr<GenericIf const>(), {});
  return key ? key->strRep() : String8();
}

} // namespace

Entity::Entity(Name name) : name_(std::move(name)) {}
Entity::~Entity() = default;

Name Entity::name() const { return name_; }
Ptr<Entity const> Entity::parent() const { return parent_; }
Ptr<Entity> Entity::parent() { return parent_; }

void Entity::parentIs(Ptr<Entity> const& parent) {
  parent_ = parent.ptr();
  handleParent(parent);
}

VyxAttr const* Entity::parentAttr() const {
  if (!parent_ || !parent_->fwkType()) return nullptr;
  return parent_->fwkType()->attr(parentAttrId_);
}

AttributeId Entity::parentAttrId() const { return parentAttrId_; }
void Entity::parentAttrIdIs(AttributeId id) { parentAttrId_ = id; }

String8 Entity::uriPath() const {
  VyxAttr const* attr = parentAttr();
  if (!attr) return String8(escapedPiece(name().view()));
  std::string path(parent_->uriPath().view());
  path.append("/").append(attr->name().view());
  String8 const key = keyText(*this, *attr);
  if (attr->keyAttr()) path.append("/").append(escapedPiece(key.view()));
  return String8(path);
}

String8 Entity::fullName() const {
  VyxAttr const* attr = parentAttr();
  if (!attr) return name();
  std::string path(parent_->fullName().view());
  path.append(path.empty() ? "" : ".").append(attr->name().view());
  if (attr->keyAttr()) path.append("[").append(keyText(*this, *attr).view()).append("]");
  return String8(path);
}

String8 Entity::attributeString(AttributeId id) const {
  VyxAttr const* attr = _fwkType()->attr(id);
  return attr ? String8(attr->name()) : String8("unknown");
}

void Entity::vyxNotifieeAdapterIs(Ptr<Entity const> const&) {}
void Entity::handleParent(Ptr<Entity> const&) {}

Ptr<Entity::VyxNboAttrLogSa> Entity::vyxNboAttrLogSa(Ptr<NboAttrLog::Out const> const& out) const {
  return const_cast<Entity*>(this)->vyxNboAttrLogSa(out);
}
bool Entity::vyxHasAttrLogInterface() const { return false; }
Ptr<Entity::VyxNboAttrLogSa> Entity::vyxNboAttrLogSa(Ptr<NboAttrLog::Out const> const&) { return {}; }
Ptr<Entity::VyxNboAttrLogSa> Entity::vyxNboAttrLogSaForMsgChannel(Ptr<VyxNboAttrLogSa> const&) const {
  return {};
}
Ptr<Entity::VyxNboAttrLogSa> Entity::vyxNboAttrLogSaIs(Vyx_BitSet, unsigned, Ptr<NboAttrLog::Out> const&,
                                                       PtrInterface*) {
  return {};
}
Ptr<Entity::VyxNboAttrLogSa> Entity::vyxNboAttrLogSaDel(Ptr<NboAttrLog::Out const> const&) { return {}; }

VyxType const* Entity::fwkType() const { return _fwkType(); }

Entity::NotifieeConst::~NotifieeConst() {
  if (notifier_ && !isWeak_) std::exchange(notifier_, nullptr)->vyxReferenceDec();
}

void Entity::NotifieeConst::onParent() {}
void Entity::NotifieeConst::onVersion() {}

void Entity::NotifieeConst::notifierIs(Ptr<PtrInterface const> const& notifier) {
  if (notifier) notifier->vyxReferenceInc();
  PtrInterface const* old = std::exchange(notifier_, notifier.ptr());
  if (old) old->vyxReferenceDec();
}

Ptr<Entity const> Entity::NotifieeConst::notifier() const { return static_cast<Entity const*>(notifier_); }

void Entity::NotifieeConst::isWeakReferenceIs(bool weak) {
  if (weak == isWeak_) return;
  isWeak_ = weak;
  if (!notifier_) return;
  if (weak)
    notifier_->vyxReferenceDec();
  else
    notifier_->vyxReferenceInc();
}

void Entity::NotifieeConst::vyxDoZombieReactors(bool zombie) {
  if (zombie == vyxMarkedForDeletion()) return;
  if (notifier_) hasNotificationActiveIs(!zombie);
  bool const registered = isRegistered_;
  if (zombie) isRegisteredNotifieeIs(false);
  vyxMarkedForDeletionIs(zombie);
  isRegistered_ = registered && zombie;
  if (!zombie) isRegisteredNotifieeIs(registered);
}

} // namespace Vyx
