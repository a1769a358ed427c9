// Where the fields stand in memory, by their order and on both widths of pointer; and what small objects
// weigh.

#include "Vyx/StreamAdapter.h"
#include "support/Reactors.h"
#include "support/Records.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <cstring>

namespace {

using Vyx::Ptr;

constexpr std::size_t kPointer = sizeof(void*);

// The field of type T at that place of an object.
template <class T> T fieldAt(void const* object, std::size_t place) {
  T value;
  std::memcpy(&value, static_cast<char const*>(object) + place, sizeof value);
  return value;
}
std::uint32_t wordAt(void const* object, std::size_t place) { return fieldAt<std::uint32_t>(object, place); }
void* pointerAt(void const* object, std::size_t place) { return fieldAt<void*>(object, place); }

// An entity as it is declared: its attributes, then its reactor list.
class Lamp final : public Vyx::Entity {
public:
  explicit Lamp(Vyx::Name name = {}) : Entity(std::move(name)) {}
  bool lit = false;
  Listeners reactors;
};

TEST(Layout, ReferenceWordStandsBehindTheTablePointer) {
  auto const lamp = Vyx::ptrFromNew(new Lamp);
  EXPECT_EQ(1U, wordAt(lamp.ptr(), kPointer));
  Ptr<Lamp> const second = lamp;
  EXPECT_EQ(2U, wordAt(lamp.ptr(), kPointer));
  lamp->hasNotificationActiveIs(true);
  lamp->vyxMarkedForDeletionIs(true);
  EXPECT_EQ(0xa0000002U, wordAt(lamp.ptr(), kPointer));
}

TEST(Layout, EntityIsNameParentPlaceAndOneWord) {
  Vyx::Name const name("porch");
  auto const house = Vyx::ptrFromNew(new Lamp);
  auto const lamp = Vyx::ptrFromNew(new Lamp(name));
  EXPECT_EQ(nullptr, pointerAt(lamp.ptr(), 3 * kPointer));
  lamp->parentIs(Ptr<Vyx::Entity>(house));
  EXPECT_EQ(fieldAt<void*>(&name, 0), pointerAt(lamp.ptr(), 2 * kPointer));
  EXPECT_EQ(static_cast<Vyx::Entity*>(house.ptr()), pointerAt(lamp.ptr(), 3 * kPointer));
  EXPECT_EQ(136U, wordAt(lamp.ptr(), 4 * kPointer));
  EXPECT_EQ(0U, wordAt(lamp.ptr(), 4 * kPointer + 4));
  EXPECT_EQ(4 * kPointer + 8, sizeof(Vyx::Entity));
}

TEST(Layout, ReactorIsNotifierTwoFlagsAndLink) {
  auto const lamp = Vyx::ptrFromNew(new Lamp);
  auto const one = Vyx::ptrFromNew(new Listener("one")), two = Vyx::ptrFromNew(new Listener("two"));
  std::size_t const notifier = (kPointer + 8 + kPointer - 1) / kPointer * kPointer;
  one->notifierIs(Ptr<Vyx::PtrInterface const>(lamp));
  EXPECT_EQ(static_cast<Vyx::PtrInterface*>(lamp.ptr()), pointerAt(one.ptr(), notifier));
  one->vyxIsRegistered(true);
  EXPECT_EQ(0x0100, fieldAt<std::uint16_t>(one.ptr(), notifier + kPointer)) << "weak first, then registered";
  one->isWeakReferenceIs(true);
  EXPECT_EQ(0x0101, fieldAt<std::uint16_t>(one.ptr(), notifier + kPointer));
  one->isWeakReferenceIs(false);
  for (Listener* listener : {one.ptr(), two.ptr()}) listener->linkTo(lamp->reactors);
  EXPECT_EQ(static_cast<Vyx::Entity::NotifieeConst*>(two.ptr()),
            pointerAt(one.ptr(), notifier + 2 * kPointer));
  for (Listener* listener : {one.ptr(), two.ptr()}) listener->unlink();
}

TEST(Layout, ReactorListIsVersionCountHeadAndTail) {
  Listeners list;
  auto const one = Vyx::ptrFromNew(new Listener("one")), two = Vyx::ptrFromNew(new Listener("two"));
  for (Listener* listener : {one.ptr(), two.ptr()}) listener->linkTo(list);
  list.unlink(one.ptr());
  list.linkHead(one.ptr());
  EXPECT_EQ(4U, wordAt(&list, kPointer));
  EXPECT_EQ(2U, wordAt(&list, kPointer + 4));
  EXPECT_EQ(static_cast<Vyx::Entity::NotifieeConst*>(one.ptr()), pointerAt(&list, kPointer + 8));
  EXPECT_EQ(static_cast<Vyx::Entity::NotifieeConst*>(two.ptr()), pointerAt(&list, 2 * kPointer + 8));
  EXPECT_EQ(3 * kPointer + 8, sizeof(Listeners));
}

TEST(Layout, HashMapIsVersionCountAndBuckets) {
  HashOf<unsigned> map;
  for (unsigned key = 0; key < 5; ++key) enter(map, key);
  map._memberDel(4);
  EXPECT_EQ(6U, wordAt(&map, kPointer));
  EXPECT_EQ(4U, wordAt(&map, kPointer + 4));
  EXPECT_EQ(8U, wordAt(&map, kPointer + 8));
}

TEST(Layout, BucketsAreAnArrayOfMembersPointers) {
  HashOf<unsigned> map;
  enter(map, 1U);
  std::size_t const array = (kPointer + 16 + kPointer - 1) / kPointer * kPointer;
  EXPECT_EQ(map.find(1), pointerAt(pointerAt(&map, array), 0));
}

TEST(Layout, TreeIsVersionCountAndRoot) {
  TreeOf<int> tree;
  enter(tree, 1);
  EXPECT_EQ(2U, wordAt(&tree, kPointer));
  EXPECT_EQ(1U, wordAt(&tree, kPointer + 4));
  EXPECT_EQ(tree.find(1), pointerAt(&tree, kPointer + 8));
  EXPECT_EQ(2 * kPointer + 8, sizeof tree);
}

TEST(Layout, LinkIsTheLastFieldOfAMember) {
  HashRecord<unsigned> const* const record = new HashRecord<unsigned>(1);
  auto const held = Vyx::ptrFromNew(const_cast<HashRecord<unsigned>*>(record));
  EXPECT_EQ(reinterpret_cast<char const*>(record + 1),
            reinterpret_cast<char const*>(&record->fwkHmNext_ + 1));
}

TEST(Layout, CountedPointersAndTextsAreOnePointer) {
  EXPECT_EQ(kPointer, sizeof(Ptr<Lamp>));
  EXPECT_EQ(kPointer, sizeof(Vyx::HashLink));
  EXPECT_EQ(kPointer, sizeof(Vyx::Name));
  EXPECT_EQ(kPointer, sizeof(Vyx::String8));
  EXPECT_EQ(4U, sizeof(Vyx_BitSet));
}

// The allocator's own word in front of the object is part of its weight.
std::size_t weightOf(void* object) { return malloc_usable_size(object) + sizeof(std::size_t); }

TEST(Layout, EntityOfOneAttributeWithItsListWeighsLittle) {
  auto const lamp = Vyx::ptrFromNew(new Lamp);
  EXPECT_GE(112U, weightOf(lamp.ptr()));
}

TEST(Layout, ReactorWeighsLittle) {
  struct Plain final : Vyx::Entity::Notifiee {};
  auto const reactor = Vyx::ptrFromNew(new Plain);
  EXPECT_GE(64U, weightOf(reactor.ptr()));
}

} // namespace
