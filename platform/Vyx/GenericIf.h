// Reading and changing any object without knowing its type when compiling: by attribute id and operation
// code.
//
// Invariants:
// (1) An operation checks in this order: that the instance may be modified, that the attribute takes an
// index,
//     that it has the operation, that a value is there, that the value is of the type; then it changes the
//     object as its setter does.
// (2) A failure leaves by an exception and the object as it was, but for a value that stores before it tests.

#pragma once

#include "Vyx/VyxType.h"

#include <memory>

namespace Vyx {

class GenericIf : public PtrInterface::NotifieeConst {
public:
  // An attribute, and what is to be done with it.
  struct AttributeOp {
    enum OpId : unsigned {
      read = 0,        // A scalar; with an index, the member of that key.
      memberCount = 1, // Of a keyed collection: the number of members.
      version = 2,     // Of a keyed collection: rises with every insertion and removal.
      contains = 3,    // Of a keyed collection with an index: whether the key is there.
      firstModifying = 128,
      write = 128,
      del = 129, // RETURNS a bool for a value collection: the value removed.
      lastModifying = 255,
      equal = 256, // On id 0 of a value; the operand in the value, else the index.
      notEqual = 257,
      greater = 258,
      less = 259,
      greaterEqual = 260,
      lessEqual = 261,
      negation = 262, // No operand.
    };
    AttributeId id;
    OpId code;
  };

  class List_;
  class AttributeIteratorConst;
  class AnyIterator;

  // ORDER: the slots of this table follow those of a reactor.
  virtual VyxType const* type() const = 0;
  // The object as one of that type. THROWS: TypeException with the short name of the own type.
  virtual void* rawPtr(VyxType const* as) const = 0;
  virtual String8 attributeString(AttributeId id) const;
  // THROWS: UnknownAttrException.
  virtual AttributeId attributeId(String8 name) const;
  // RETURNS what was read, wrapped; null for a write. A null pointer is read as a null interface.
  virtual Ptr<GenericIf> attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& index,
                                     Ptr<GenericIf> const& value);
  virtual String8 strRep() const;
  virtual std::uint32_t hash() const;
  // THROWS: OpNotSupportedException when the attribute is no collection.
  virtual AttributeIteratorConst attributeIteratorConst(AttributeId id) const;
  virtual AttributeIteratorConst attributeIteratorKeyConst(AttributeId id,
                                                           Ptr<GenericIf const> const& key) const;
  virtual Ptr<GenericIf const> attributeIterator_iterObj(AttributeIteratorConst const& at) const;
  virtual Ptr<GenericIf> attributeIterator_iterObj(AttributeIteratorConst const& at);
  virtual Ptr<GenericIf> attributeIterator_iterInc(AttributeIteratorConst const& at) const;
  virtual Ptr<GenericIf> attributeIterator_iterKey(AttributeIteratorConst const& at) const;
  virtual AttributeIteratorConst attributeIterator_iterClone(AttributeIteratorConst const& at) const;
  virtual bool attributeIterator_nonNull(AttributeIteratorConst const& at) const;
  virtual void attributeIterator_iterDel(AttributeIteratorConst const& at) const;
  virtual AttributeIteratorConst attributeIterator(AttributeId id);
  virtual AttributeIteratorConst attributeIteratorKey(AttributeId id, Ptr<GenericIf const> const& key);

  bool isConst() const { return isConst_; }
  // The wrapped object: the entity, or the value's bytes.
  virtual void* object() const = 0;

  // Passes on what a registered object hears: listener->onAttribute(id).
  void listenerIs(Ptr<PtrInterface::NotifieeConst> listener) { listener_ = std::move(listener); }
  void onAttribute(AttributeId id) override;

  // A change of the wrapped object reached its adapter.
  void vyxForward(AttributeId id);

  [[noreturn]] static void throwConstException(char const* message);
  [[noreturn]] static void throwOpNotSupportedException(char const* attribute, AttributeOp::OpId code,
                                                        bool indexed);
  [[noreturn]] static void throwBadIndexAttrException(char const* attribute);
  [[noreturn]] static void throwTypeException(char const* what);
  [[noreturn]] static void throwUnknownArgException(char const* function);
  [[noreturn]] static void throwUnknownAttrException(char const* attribute);

protected:
  explicit GenericIf(bool isConst) : isConst_(isConst) {}
  AttributeOps const& opsOf(AttributeId id) const;

private:
  Ptr<PtrInterface::NotifieeConst> listener_;
  bool isConst_;
};

// An iterator of unknown kind over one collection.
class GenericIf::AnyIterator {
public:
  virtual ~AnyIterator() = default;
  virtual bool nonNull() const = 0;
  virtual void advance() = 0;
  // REQUIRES: nonNull().
  virtual Ptr<GenericIf> key() const = 0;
  virtual Ptr<GenericIf> value() const = 0;
  virtual std::unique_ptr<AnyIterator> clone() const = 0;
};

// A walk over one collection of one object. It keeps the object's interface, and so the object, alive.
class GenericIf::AttributeIteratorConst {
public:
  AttributeIteratorConst(Ptr<GenericIf const> over, AttributeId id, std::unique_ptr<AnyIterator> iterator)
      : over_(std::move(over)), id_(id), iterator_(std::move(iterator)) {}
  AttributeIteratorConst(AttributeIteratorConst const& o)
      : over_(o.over_), id_(o.id_), iterator_(o.iterator_ ? o.iterator_->clone() : nullptr) {}
  AttributeIteratorConst(AttributeIteratorConst&&) = default;
  AttributeIteratorConst& operator=(AttributeIteratorConst o) {
    std::swap(over_, o.over_);
    std::swap(id_, o.id_);
    std::swap(iterator_, o.iterator_);
    return *this;
  }

  AttributeId id() const { return id_; }
  explicit operator bool() const { return iterator_ && iterator_->nonNull(); }
  AttributeIteratorConst& operator++() {
    iterator_->advance();
    return *this;
  }
  Ptr<GenericIf> key() const { return iterator_->key(); }
  Ptr<GenericIf> value() const { return iterator_->value(); }

private:
  friend class GenericIf;
  Ptr<GenericIf const> over_;
  AttributeId id_;
  mutable std::unique_ptr<AnyIterator> iterator_;
};

// The arguments of a function or constructor, by name.
class GenericIf::List_ final : public GenericIf {
public:
  struct Entry {
    Name name;
    Ptr<GenericIf const> value;
  };
  List_() : GenericIf(false) {}
  void argumentIs(Name name, Ptr<GenericIf const> value) {
    entries_.push_back({std::move(name), std::move(value)});
  }
  std::vector<Entry> const& entries() const { return entries_; }
  // Null when there is no such argument.
  Ptr<GenericIf const> argument(Name const& name) const;

  VyxType const* type() const override { return nullptr; }
  void* rawPtr(VyxType const* as) const override;
  void* object() const override { return nullptr; }

private:
  std::vector<Entry> entries_;
};

// How the copy of an attribute goes on into the children that it meets.
class EntityCopier {
public:
  // RETURNS whether the destination changed.
  virtual bool copyEntity(Entity& dest, Entity const& src) = 0;

protected:
  ~EntityCopier() = default;
};

// How reflection and copy reach one attribute. One stateless object for each attribute.
class AttributeOps {
public:
  // REQUIRES: the instance may be modified if the code modifies.
  virtual Ptr<GenericIf> op(GenericIf& self, GenericIf::AttributeOp::OpId code,
                            Ptr<GenericIf const> const& index, Ptr<GenericIf> const& value) const = 0;
  // A walk from the key, or from the first member when `key` is null; null for what is no collection.
  virtual std::unique_ptr<GenericIf::AnyIterator> iterator(GenericIf const& self, GenericIf const* key) const;
  // Makes the destination's attribute equal to the source's, writing only what differs. RETURNS whether
  // anything was written. Both are of the type that has the attribute. What is fixed at construction isn't
  // copied.
  virtual bool copy(Entity& dest, Entity const& src, EntityCopier& copier) const;
  // Whether `copy` can ever do anything.
  virtual bool isCopied() const;
  // RETURNS the child that the owner has, or makes, with the model's constructor values; the model's own
  // attributes aren't looked at.
  // REQUIRES: the owner has the attribute, and the model is of its child type.
  // THROWS: OpNotSupportedException when the attribute has no children.
  virtual Ptr<Entity> childLike(Entity& owner, Entity const& model) const;

protected:
  ~AttributeOps() = default;
};

} // namespace Vyx
