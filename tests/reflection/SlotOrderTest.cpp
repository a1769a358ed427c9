// The order of the operations of a reflection interface.

#include "Pbr/Pbr.h"
#include "Reflecting.h"
#include "support/SlotOf.h"

namespace {

using Walk = GenericIf::AttributeIteratorConst;
using Reactor = Vyx::PtrInterface::NotifieeConst;

TEST(ReflectionSlots, FollowThoseOfAReactor) {
  expectSlotsFrom(
      slotCount<Reactor>(),
      {slotOf(&GenericIf::type), slotOf(&GenericIf::rawPtr), slotOf(&GenericIf::attributeString),
       slotOf(&GenericIf::attributeId), slotOf(&GenericIf::attributeOp), slotOf(&GenericIf::strRep),
       slotOf(&GenericIf::hash), slotOf(&GenericIf::attributeIteratorConst),
       slotOf(&GenericIf::attributeIteratorKeyConst),
       slotOf<Vyx::Ptr<GenericIf const> (GenericIf::*)(Walk const&) const>(
           &GenericIf::attributeIterator_iterObj),
       slotOf<Object (GenericIf::*)(Walk const&)>(&GenericIf::attributeIterator_iterObj),
       slotOf(&GenericIf::attributeIterator_iterInc), slotOf(&GenericIf::attributeIterator_iterKey),
       slotOf(&GenericIf::attributeIterator_iterClone), slotOf(&GenericIf::attributeIterator_nonNull),
       slotOf(&GenericIf::attributeIterator_iterDel), slotOf(&GenericIf::attributeIterator),
       slotOf(&GenericIf::attributeIteratorKey)});
}

TEST(ReflectionSlots, OwnOperationsStandBehindTheIteratorFamily) {
  EXPECT_EQ(slotOf(&GenericIf::attributeIteratorKey) + 1, slotOf(&GenericIf::object));
}

TEST(ReflectionSlots, OverridesKeepTheirSlots) {
  EXPECT_EQ(slotOf(&Reactor::onAttribute), slotOf(&GenericIf::onAttribute));
  EXPECT_EQ(slotOf(&GenericIf::rawPtr), slotOf(&Vyx::GenericIfEntity::rawPtr));
  EXPECT_EQ(slotOf(&GenericIf::attributeOp), slotOf(&Vyx::ValueGenericIf<bool>::attributeOp));
}

} // namespace
