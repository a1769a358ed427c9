// What an adapter of a type owes: one bit an attribute.

#pragma once

#include "Vyx/NboAttrLog/FlowOut.h"
#include "replication/Attributes.h"

namespace replication {

template <class List> class DirtyBits {
public:
  template <class Attr> bool isDirty() const { return word_ & dirtyBit<Attr>(List()); }
  template <class Attr> void dirtyIs(bool dirty) {
    constexpr unsigned bit = dirtyBit<Attr>(List());
    word_ = dirty ? word_ | bit : word_ & ~bit;
  }
  // Marks the attributes from that one on.
  void dirtyFrom(Vyx::AttributeId first) {
    forEach(List(), [&]<class Attr>(Attr const*) {
      if (Attr::id >= first) dirtyIs<Attr>(true);
    });
  }
  unsigned word() const { return word_; }

private:
  unsigned word_ = 0;
};

// `Bits` derives from DirtyBits and adds the attributes' names.
template <class Base, class Bits> class FlowOutOf : public Base {
public:
  FlowOutOf(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out, Vyx::Ptr<Vyx::Entity::VyxNboAttrLogSa> const& adapter,
            Vyx::ConnectDesc const& desc, bool isResync, Vyx::AttributeId firstAid)
      : Base(out, adapter, desc, isResync, firstAid) {
    dirty_.dirtyFrom(firstAid);
  }

  bool hasDirtyAttributes() const override { return Base::hasDirtyAttributes() || dirty_.word() != 0; }

  // Of this level; a derived type's own word hides it.
  Bits* dirty() { return &dirty_; }

private:
  Bits dirty_;
};

} // namespace replication
