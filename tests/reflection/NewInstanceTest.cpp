// Making objects from constructor arguments by name.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using Pbr::Dscp;
using Vyx::Name;

constexpr char const* kOutOfRange = "RangeException: Dscp::value < Dscp::min or > Dscp::invalid not allowed";

template <class X> Object newInstance(Arguments arguments) {
  return X::_fwkType()->newInstance(Vyx::Ptr<GenericIf const>(listOf(arguments)));
}
template <class X> std::string newFailure(Arguments arguments) {
  return failure([&] { newInstance<X>(arguments); });
}

TEST(NewInstance, EntityIsMadeOfItsArgumentsInAnyOrder) {
  Object const made = newInstance<Pbr::PbrFwdAction>({{"fwdActionType", valueOf(Pbr::dropAction)},
                                                      {"className", valueOf(Name("web"))},
                                                      {"id", valueOf(UniqueId(1, 2, 3))}});
  auto const* const action = entityOn<Pbr::PbrFwdAction>(made);
  ASSERT_NE(nullptr, action);
  EXPECT_EQ(Name("web"), action->className());
  EXPECT_EQ(UniqueId(1, 2, 3), action->id());
  EXPECT_EQ(Pbr::dropAction, action->fwdActionType());
  EXPECT_FALSE(made->isConst());
  EXPECT_FALSE(action->parent());
}

TEST(NewInstance, EntityWithoutParametersTakesAnEmptyList) {
  EXPECT_NE(nullptr, entityOn<Pbr::PolicyMapCopyHandler>(newInstance<Pbr::PolicyMapCopyHandler>({})));
  EXPECT_EQ("running", newInstance<Pbr::Config>({{"name", valueOf(Name("running"))}})->strRep());
}

TEST(NewInstance, ValueIsMadeAndChecked) {
  EXPECT_EQ(Dscp(46), Vyx::unwrap<Dscp>(*newInstance<Dscp>({{"value", valueOf<unsigned char>(46)}})));
  EXPECT_EQ(Dscp(), Vyx::unwrap<Dscp>(*newInstance<Dscp>({{"value", valueOf<unsigned char>(64)}})));
  EXPECT_EQ(kOutOfRange, newFailure<Dscp>({{"value", valueOf<unsigned char>(65)}}));
}

TEST(NewInstance, WrongArgumentIsRefusedByTheList) {
  EXPECT_EQ(badType("List"), failure([] { Dscp::_fwkType()->newInstance(nullptr); }));
  EXPECT_EQ(badType("Vyx::GenericIf::List_"),
            failure([] { Dscp::_fwkType()->newInstance(Vyx::Ptr<GenericIf const>(valueOf(Dscp(1)))); }));
  EXPECT_EQ(unknownArgument("Dscp"),
            newFailure<Dscp>({{"value", valueOf<unsigned char>(1)}, {"dscp", valueOf<unsigned char>(1)}}));
}

TEST(NewInstance, MissingOrForeignValueIsNamed) {
  EXPECT_EQ(badType("value"), newFailure<Dscp>({}));
  EXPECT_EQ(badType("value"), newFailure<Dscp>({{"value", nullptr}}));
  EXPECT_EQ(badType("U32"), newFailure<Dscp>({{"value", valueOf<unsigned>(1)}}));
  EXPECT_EQ(badType("id"), newFailure<Pbr::PbrFwdAction>({{"className", valueOf(Name("web"))},
                                                          {"fwdActionType", valueOf(Pbr::dropAction)}}));
}

TEST(NewInstance, CodePointOfAnActionIsTestedBeforeTheActionIsMade) {
  Object const dscp = valueOf(Dscp(10));
  EXPECT_EQ(kOutOfRange, failureOf(dscp, Op::write, 2, nullptr, valueOf<unsigned char>(65)));
  EXPECT_EQ(kOutOfRange,
            newFailure<Pbr::PbrActionSetDscp>(
                {{"className", valueOf(Name("web"))}, {"id", valueOf(UniqueId(1, 2, 3))}, {"dscp", dscp}}));
}

TEST(NewInstance, TypesWithoutParametersByNameRefuse) {
  EXPECT_EQ("RangeException: Kest::UniqueId can't be made by reflection",
            failure([] { UniqueId::_fwkType()->newInstance(Vyx::Ptr<GenericIf const>(listOf({}))); }));
}

} // namespace
