#include "Vyx/GenericIf.h"

namespace Vyx {

namespace {

// The attribute's name, or its number where the type doesn't have it.
String8 nameOf(GenericIf const& self, AttributeId id) {
  VyxAttr const* attr = self.type() ? self.type()->attr(id) : nullptr;
  return attr ? String8(attr->name()) : format("%d", id);
}

} // namespace

String8 GenericIf::attributeString(AttributeId id) const {
  VyxAttr const* attr = type() ? type()->attr(id) : nullptr;
  return attr ? String8(attr->name()) : String8("unknown");
}

AttributeId GenericIf::attributeId(String8 name) const {
  VyxAttr const* attr = type() ? type()->attr(Name(name)) : nullptr;
  if (!attr) throwUnknownAttrException(name.charPtr());
  return attr->id();
}

AttributeOps const& GenericIf::opsOf(AttributeId id) const {
  VyxAttr const* attr = type() ? type()->attr(id) : nullptr;
  if (!attr || !attr->ops()) throwUnknownAttrException(nameOf(*this, id).charPtr());
  return *attr->ops();
}

Ptr<GenericIf> GenericIf::attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& index,
                                      Ptr<GenericIf> const& value) {
  bool const modifies = op.code >= AttributeOp::firstModifying && op.code <= AttributeOp::lastModifying;
  if (modifies && isConst_) throwConstException("attempting to modify a const instance");
  return opsOf(op.id).op(*this, op.code, index, value);
}

String8 GenericIf::strRep() const { return {}; }
std::uint32_t GenericIf::hash() const { return 0; }

GenericIf::AttributeIteratorConst GenericIf::attributeIteratorConst(AttributeId id) const {
  auto iterator = opsOf(id).iterator(*this, nullptr);
  if (!iterator) throwOpNotSupportedException(nameOf(*this, id).charPtr(), AttributeOp::read, true);
  return {this, id, std::move(iterator)};
}

GenericIf::AttributeIteratorConst
GenericIf::attributeIteratorKeyConst(AttributeId id, Ptr<GenericIf const> const& key) const {
  if (!key) {
    attributeIteratorConst(id); // Raises for what is no collection.
    throwTypeException("vyx_index");
  }
  auto iterator = opsOf(id).iterator(*this, key.ptr());
  if (!iterator) throwOpNotSupportedException(nameOf(*this, id).charPtr(), AttributeOp::read, true);
  return {this, id, std::move(iterator)};
}

Ptr<GenericIf const> GenericIf::attributeIterator_iterObj(AttributeIteratorConst const& at) const {
  if (!at) throwTypeException(nameOf(*this, at.id_).charPtr());
  return at.value();
}
Ptr<GenericIf> GenericIf::attributeIterator_iterObj(AttributeIteratorConst const& at) {
  if (!at) throwTypeException(nameOf(*this, at.id_).charPtr());
  return at.value();
}
Ptr<GenericIf> GenericIf::attributeIterator_iterInc(AttributeIteratorConst const& at) const {
  if (at) at.iterator_->advance();
  return {};
}
Ptr<GenericIf> GenericIf::attributeIterator_iterKey(AttributeIteratorConst const& at) const {
  if (!at) throwTypeException(nameOf(*this, at.id_).charPtr());
  return at.key();
}
GenericIf::AttributeIteratorConst
GenericIf::attributeIterator_iterClone(AttributeIteratorConst const& at) const {
  return at;
}
bool GenericIf::attributeIterator_nonNull(AttributeIteratorConst const& at) const {
  return static_cast<bool>(at);
}
void GenericIf::attributeIterator_iterDel(AttributeIteratorConst const& at) const { at.iterator_.reset(); }
GenericIf::AttributeIteratorConst GenericIf::attributeIterator(AttributeId id) {
  return attributeIteratorConst(id);
}
GenericIf::AttributeIteratorConst GenericIf::attributeIteratorKey(AttributeId id,
                                                                  Ptr<GenericIf const> const& key) {
  return attributeIteratorKeyConst(id, key);
}

void GenericIf::onAttribute(AttributeId id) {
  Ptr<PtrInterface::NotifieeConst> const listener = listener_; // It may end this object.
  if (listener) listener->onAttribute(id);
}

void GenericIf::vyxForward(AttributeId id) {
  if (vyxOnAttribute(id, nullptr)) return;
  actsm();
  onAttribute(id);
}

void GenericIf::throwConstException(char const* message) { throw ConstException(message); }
void GenericIf::throwOpNotSupportedException(char const* attribute, AttributeOp::OpId code, bool indexed) {
  throw OpNotSupportedException(format("operation %u is not supported on %s%s", static_cast<unsigned>(code),
                                       attribute, indexed ? " with an index" : ""));
}
void GenericIf::throwBadIndexAttrException(char const* attribute) {
  throw BadIndexAttrException(format("attribute %s takes no index", attribute));
}
void GenericIf::throwTypeException(char const* what) {
  throw TypeException(format("missing or of the wrong type: %s", what));
}
void GenericIf::throwUnknownArgException(char const* function) {
  throw UnknownArgException(format("unknown argument of %s", function));
}
void GenericIf::throwUnknownAttrException(char const* attribute) {
  throw UnknownAttrException(format("unknown attribute: %s", attribute));
}

Ptr<GenericIf const> GenericIf::List_::argument(Name const& name) const {
  for (Entry const& entry : entries_)
    if (entry.name == name) return entry.value;
  return {};
}

void* GenericIf::List_::rawPtr(VyxType const*) const { throwTypeException("List"); }

std::unique_ptr<GenericIf::AnyIterator> AttributeOps::iterator(GenericIf const&, GenericIf const*) const {
  return nullptr;
}
bool AttributeOps::copy(Entity&, Entity const&, EntityCopier&) const { return false; }
bool AttributeOps::isCopied() const { return false; }
Ptr<Entity> AttributeOps::childLike(Entity&, Entity const& model) const {
  GenericIf::throwOpNotSupportedException(model.fwkType()->name().charPtr(), GenericIf::AttributeOp::write,
                                          false);
}

} // namespace Vyx
