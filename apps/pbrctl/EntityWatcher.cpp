#include "pbrctl/EntityWatcher.h"

#include "Vyx/ValueGenericIf.h"
#include "pbrctl/Attributes.h"

namespace Pbrctl {

using Vyx::GenericIf;
using Vyx::VyxAttr;
using Vyx::VyxType;
using Op = GenericIf::AttributeOp;

namespace {

// The attributes that own entities, by the type that they own.
using Owners = std::map<VyxType const*, VyxAttr const*>;

Owners ownersOf(std::vector<VyxType const*> const& types) {
  Owners owners;
  for (VyxType const* type : types)
    for (VyxType::AttributeQIteratorConst at(*type); at; ++at)
      if (isOwning(*at)) owners.emplace(at->valueType(), &*at);
  return owners;
}

// RETURNS null for a type whose entities never have a parent.
VyxAttr const* ownerOf(VyxType const& type) {
  static Owners const kOwners = ownersOf(VyxType::types());
  for (VyxType const* at = &type; at; at = at->baseType())
    if (auto const found = kOwners.find(at); found != kOwners.end()) return found->second;
  return nullptr;
}

std::string valueOf(GenericIf& entity, Vyx::Name const& attribute) {
  VyxAttr const* const attr = entity.type()->attr(attribute);
  if (!attr || !isState(*attr)) return {};
  auto const value = entity.attributeOp({attr->id(), Op::read}, nullptr, nullptr);
  return value ? plainText(*value) : std::string();
}

// What an entity is known by: the key that its owner has it under, else what it was made of.
std::string identityOf(GenericIf& entity) {
  VyxAttr const* const owner = ownerOf(*entity.type());
  if (owner && owner->keyAttr()) return valueOf(entity, owner->keyAttr()->name());
  std::string text;
  for (Vyx::Name const& parameter : entity.type()->constructorArgNameQ())
    text.append(text.empty() ? "" : " ").append(valueOf(entity, parameter));
  return text;
}

// What an identifier stands for in the model.
std::string aboutOf(GenericIf& entity) {
  std::string const name = valueOf(entity, "className");
  return name.empty() ? name : "class " + name;
}

} // namespace

EntityWatcher::EntityWatcher(Object const& entity, ChangeSink const& sink, std::string path,
                             EntityWatcher const* above)
    : entity_(Vyx::dynamicPtrCast<Vyx::GenericIfEntity>(entity)), sink_(sink), path_(std::move(path)),
      above_(above), about_(aboutOf(*entity_)) {
  eachAttribute([this](VyxAttr const& attr) {
    if (!holdsEntities(attr)) return;
    eachHeld(attr, [&](Key const& key, Object const& held) {
      if (held && (isOwning(attr) || isFollowed(held))) follow(changeOf(attr, key), held);
    });
  });
  entity_->changeListenerIs(this);
  entity_->isRegisteredNotifieeIs(true);
}

EntityWatcher::~EntityWatcher() {
  entity_->isRegisteredNotifieeIs(false);
  entity_->changeListenerIs(nullptr);
}

void EntityWatcher::onChange(Vyx::AttributeId id, Key const& key) {
  VyxAttr const* const attr = entity_->type()->attr(id);
  if (attr && isState(*attr)) tell(*attr, key);
}

void EntityWatcher::tell(VyxAttr const& attr, Key const& key) {
  Change change = changeOf(attr, key);
  bool const isThere = !key || contains(attr, key);
  Object const held = isThere ? read(attr, key) : nullptr;
  if (isOwning(attr)) return tellChild(std::move(change), held);
  change.about = about_;
  if (isReference(attr)) return tellReference(std::move(change), held);
  if (isThere)
    change.value = plainText(*held);
  else
    change.kind = Change::Kind::removed;
  sink_(change);
}

void EntityWatcher::tellChild(Change change, Object const& child) {
  std::string const path = change.path();
  auto const before = below_.find(path);
  std::string const aboutBefore = before == below_.end() ? std::string() : before->second->about_;
  below_.erase(path);
  change.kind = child ? Change::Kind::added : Change::Kind::removed;
  change.about = child ? aboutOf(*child) : aboutBefore;
  sink_(change);
  if (child) follow(change, child);
}

void EntityWatcher::tellReference(Change change, Object const& to) {
  below_.erase(change.path());
  if (to)
    change.value = identityOf(*to);
  else if (change.key)
    change.kind = Change::Kind::removed;
  else
    change.value = "none";
  sink_(change);
  if (to && isFollowed(to)) follow(change, to).tellAll();
}

void EntityWatcher::tellAll() {
  eachAttribute([this](VyxAttr const& attr) {
    eachHeld(attr, [&](Key const& key, Object const& held) {
      if (!held) return;
      tell(attr, key);
      if (isOwning(attr)) below_.at(changeOf(attr, key).path())->tellAll();
    });
  });
}

template <class Visit> void EntityWatcher::eachAttribute(Visit visit) const {
  for (VyxType::AttributeQIteratorConst at(*entity_->type()); at; ++at)
    if (isState(*at) && !isFixed(*at)) visit(*at);
}

template <class Visit> void EntityWatcher::eachHeld(VyxAttr const& attr, Visit visit) const {
  if (!isKeyed(attr)) return visit(nullptr, read(attr, nullptr));
  for (auto at = entity_->attributeIteratorConst(attr.id()); at; ++at) visit(at.key(), at.value());
}

EntityWatcher::Object EntityWatcher::read(VyxAttr const& attr, Key const& key) const {
  return entity_->attributeOp({attr.id(), Op::read}, key, nullptr);
}

bool EntityWatcher::contains(VyxAttr const& attr, Key const& key) const {
  return Vyx::unwrap<bool>(*entity_->attributeOp({attr.id(), Op::contains}, key, nullptr));
}

Change EntityWatcher::changeOf(VyxAttr const& attr, Key const& key) const {
  Change change{Change::Kind::set, path_, std::string(attr.name().view()), {}, {}, {}};
  if (key) change.key = plainText(*key);
  return change;
}

bool EntityWatcher::isAbove(Object const& entity) const {
  for (EntityWatcher const* at = this; at; at = at->above_)
    if (at->entity_->object() == entity->object()) return true;
  return false;
}

bool EntityWatcher::isFollowed(Object const& entity) const {
  return !ownerOf(*entity->type()) && !isAbove(entity);
}

EntityWatcher& EntityWatcher::follow(Change const& place, Object const& entity) {
  std::string const path = place.path();
  auto& watcher = below_[path];
  watcher = std::make_unique<EntityWatcher>(entity, sink_, path, this);
  return *watcher;
}

} // namespace Pbrctl
