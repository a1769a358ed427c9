// A reactor of any type all of whose entries lead to one function, so that a test needn't name them.
//
// The reactor's table of virtual operations is copied, and in the copy every slot behind those of the runtime
// is replaced. An entry may have a key; the function doesn't look at it.

#pragma once

#include "support/SlotOf.h"

#include "Vyx/Entity.h"

#include <algorithm>
#include <array>
#include <vector>

template <class X> class AnyEntry : public X::Notifiee {
public:
  static Vyx::Ptr<AnyEntry> make() {
    auto const reactor = Vyx::ptrFromNew(new AnyEntry);
    reactor->tableIs(replaced(reactor->table()));
    return reactor;
  }

  // Entries called since the last call.
  unsigned take() { return std::exchange(calls_, 0); }
  // Ids that came with an exception since the last call.
  std::vector<Vyx::AttributeId> takeExceptions() { return std::exchange(exceptions_, {}); }

  bool throws = false; // Whether the entries throw.

  using X::Notifiee::onNotificationException;
  void onNotificationException(Vyx::AttributeId id) override { exceptions_.push_back(id); }
  void onZeroReferences() override { entry(this); }
  void onVersion() override { entry(this); }

private:
  // The first slot behind the runtime's: onIsNondestructing. Before a table stand two more words.
  static constexpr std::size_t kFirst = 31;
  static constexpr std::size_t kBefore = 2;
  static constexpr std::size_t kMost = 128;

  static void entry(AnyEntry* self) {
    ++self->calls_;
    if (self->throws) throw 1;
  }

  void** table() const {
    void** table;
    std::memcpy(&table, static_cast<void const*>(this), sizeof table);
    return table;
  }
  void tableIs(void** table) { std::memcpy(static_cast<void*>(this), &table, sizeof table); }

  // The same for all reactors of the class, and never freed, as a table has to be.
  static void** replaced(void** table) {
    static std::array<void*, kMost> copy;
    std::size_t const slots = slotCount<typename X::NotifieeConst>();
    EXPECT_LE(slots, kMost - kBefore);
    std::copy_n(table - kBefore, slots + kBefore, copy.begin());
    for (std::size_t i = kFirst; i < slots; ++i) copy[i + kBefore] = reinterpret_cast<void*>(&entry);
    return copy.data() + kBefore;
  }

  unsigned calls_ = 0;
  std::vector<Vyx::AttributeId> exceptions_;
};
