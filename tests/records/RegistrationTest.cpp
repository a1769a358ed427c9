// How type records come to be: by the first use or by the load of their unit, whichever comes first.

#include "RecordText.h"
#include "TestTypes.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vyx::IntrospectionReactor;
using Vyx::VyxType;

auto timesIn(std::vector<VyxType const*> const& list, VyxType const* type) {
  return std::count(list.begin(), list.end(), type);
}

TEST(Registration, TypeHasOneRecordWhichItsBaseHoldsOnce) {
  VyxType const* const dog = Dog<1>::_fwkType();
  EXPECT_EQ(dog, Dog<1>::_fwkType());
  Zoo<1>::unit().load();
  EXPECT_EQ(dog, Dog<1>::_fwkType());
  EXPECT_EQ(1, Dog<1>::made);
  EXPECT_EQ(1, timesIn(Animal<1>::_fwkType()->derivedTypeQ(), dog));
  EXPECT_EQ(Animal<1>::_fwkType(), dog->baseType());
}

TEST(Registration, FirstUseFillsTheWholeUnit) {
  VyxType const* const dog = Dog<2>::_fwkType();
  EXPECT_FALSE(attributeNames(*dog).empty());
  EXPECT_FALSE(attributeNames(*Animal<2>::_fwkType()).empty());
  EXPECT_FALSE(Zoo<2>::unit().loaded());
}

TEST(Registration, RecordThatComesBeforeTheReactorIsReadyIsFilledByTheLoad) {
  VyxType const* early = nullptr;
  {
    ReactorNotReady const tooEarly;
    Hearing const hearing;
    early = Dog<3>::_fwkType();
    EXPECT_THAT(attributeNames(*early), IsEmpty());
    EXPECT_THAT(attributeNames(*Animal<3>::_fwkType()), IsEmpty());
    EXPECT_THAT(hearing.lines(), IsEmpty());
  }
  EXPECT_THAT(attributeNames(*early), IsEmpty());
  Zoo<3>::unit().load();
  EXPECT_EQ(early, Dog<3>::_fwkType());
  EXPECT_THAT(attributeNames(*early), ElementsAre("weight", "sound", "bones", "legs"));
  EXPECT_EQ(1, Dog<3>::made);
}

TEST(Registration, LoadWithoutAReadyReactorIsMadeUpForLater) {
  {
    ReactorNotReady const tooEarly;
    Zoo<4>::unit().load();
    EXPECT_EQ(0, Dog<4>::defined);
  }
  Zoo<4>::unit().run();
  EXPECT_EQ(1, Dog<4>::defined);
}

TEST(Registration, ReactorWithoutAContextIsNotReady) {
  auto const reactor = IntrospectionReactor::global();
  auto const context = reactor->context();
  reactor->contextIs(nullptr);
  Zoo<5>::unit().run();
  EXPECT_EQ(0, Animal<5>::defined);
  reactor->contextIs(context);
  Zoo<5>::unit().run();
  EXPECT_EQ(1, Animal<5>::defined);
}

TEST(Registration, FirstUseOfAnotherTypeTriesAgain) {
  {
    ReactorNotReady const tooEarly;
    Animal<6>::_fwkType();
  }
  Dog<6>::_fwkType();
  EXPECT_THAT(attributeNames(*Animal<6>::_fwkType()), ElementsAre("legs", "sound", "weight"));
}

TEST(Registration, UnitRunsOnce) {
  Zoo<7>::unit().run();
  Hearing const hearing;
  Zoo<7>::unit().run();
  Zoo<7>::unit().load();
  Dog<7>::_fwkType();
  EXPECT_THAT(hearing.lines(), IsEmpty());
  EXPECT_EQ(1, Animal<7>::defined);
  EXPECT_EQ(1, Dog<7>::defined);
}

TEST(Registration, ReactorHearsTheUnitInOrder) {
  Hearing const hearing;
  Zoo<8>::unit().run();
  EXPECT_THAT(hearing.lines(),
              ElementsAre("namespace Zoo",                                     //
                          "type Animal",                                       //
                          "attr legs", "attr exit", "attr sound", "attr exit", //
                          "attr weight", "attr exit",                          //
                          "exit",                                              //
                          "type Dog : Animal",                                 //
                          "attr legs", "attr exit", "attr sound", "attr exit", // Inherited.
                          "attr weight", "attr exit",                          //
                          "attr sound", "attr exit", "attr bones", "attr exit", "attr legs", "attr exit", //
                          "exit",                                                                         //
                          "exit"));
}

TEST(Registration, EveryRecordIsThereBeforeTheFirstIsFilled) {
  Zoo<9>::unit().run();
  EXPECT_EQ(1, Animal<9>::dogsWhenFilled);
}

TEST(Registration, InheritedAttributesComeFirstAndRedefinedOnesAmongTheOwn) {
  EXPECT_THAT(attributeNames(*Animal<10>::_fwkType()), ElementsAre("legs", "sound", "weight"));
  EXPECT_THAT(attributeNames(*Dog<10>::_fwkType()), ElementsAre("weight", "sound", "bones", "legs"));
}

TEST(Registration, RedefinitionReplacesTheRowAndLeavesTheBaseItsOwn) {
  VyxType const& dog = *Dog<11>::_fwkType();
  VyxType const& animal = *Animal<11>::_fwkType();
  EXPECT_EQ("259 | sound | Vyx::String8 | | 0x20001 | 0x400 | 8 | at Vyx::Name loud bool",
            attributeRow(*dog.attr(259)));
  EXPECT_EQ("259 | sound | Vyx::String8 | | 0x20001 | 0x400 | 8 | at Vyx::Name",
            attributeRow(*animal.attr(259)));
  EXPECT_EQ("258 | legs | U32 | | 0x220143 | 0x1000400 | 2 |", attributeRow(*dog.attr(258)));
  EXPECT_EQ("258 | legs | U32 | | 0x220109 | 0x40000400 | 2 |", attributeRow(*animal.attr(258)));
}

TEST(Registration, InheritedRowIsACopyOfTheBases) {
  VyxType const& dog = *Dog<12>::_fwkType();
  VyxType const& animal = *Animal<12>::_fwkType();
  EXPECT_EQ(attributeRow(*animal.attr(260)), attributeRow(*dog.attr(260)));
  EXPECT_NE(animal.attr(260), dog.attr(260));
}

TEST(Registration, ConstructorsParametersStandInOrder) {
  EXPECT_EQ("name Vyx::Name legs U32", parameterText(*Animal<13>::_fwkType()));
  EXPECT_EQ("", parameterText(*Dog<13>::_fwkType()));
}

TEST(Registration, LoadEntersTheNamesInOrder) {
  EXPECT_EQ(nullptr, VyxType::typeByName("Zoo14::Dog"));
  EXPECT_EQ("Dog", textOf(Dog<14>::_fwkType()->fullTypeName()));
  Zoo<14>::unit().load();
  EXPECT_EQ(Dog<14>::_fwkType(), VyxType::typeByName("Zoo14::Dog"));
  EXPECT_EQ("Zoo14::Dog", textOf(Dog<14>::_fwkType()->fullTypeName()));
  EXPECT_THAT(typesOfNamespace("Zoo14::"), ElementsAre("Zoo14::Animal", "Zoo14::Dog"));
  EXPECT_EQ(nullptr, VyxType::typeByName("Dog"));
}

TEST(Registration, SecondLoadDoesNothingNew) {
  EXPECT_FALSE(Zoo<15>::unit().loaded());
  Zoo<15>::unit().load();
  EXPECT_TRUE(Zoo<15>::unit().loaded());
  Hearing const hearing;
  Zoo<15>::unit().load();
  EXPECT_THAT(hearing.lines(), IsEmpty());
  EXPECT_THAT(typesOfNamespace("Zoo15::"), ElementsAre("Zoo15::Animal", "Zoo15::Dog"));
  EXPECT_EQ(1, timesIn(Animal<15>::_fwkType()->derivedTypeQ(), Dog<15>::_fwkType()));
}

TEST(Registration, FailureReachesTheCallerAndIsNotTriedAgain) {
  Dog<16>::definitionFails = true;
  EXPECT_THROW(Animal<16>::_fwkType(), Vyx::InternalException);
  Dog<16>::definitionFails = false;
  EXPECT_THAT(attributeNames(*Animal<16>::_fwkType()), ElementsAre("legs", "sound", "weight"));
  EXPECT_THAT(attributeNames(*Dog<16>::_fwkType()), IsEmpty());
  EXPECT_EQ(1, Dog<16>::defined);
}

TEST(Registration, FailureInsideALoadReachesTheLoader) {
  Animal<17>::definitionFails = true;
  EXPECT_THROW(Zoo<17>::unit().load(), Vyx::InternalException);
  EXPECT_FALSE(Zoo<17>::unit().loaded());
}

TEST(Registration, RecordThatFailsToBeMadeIsNotKept) {
  ReactorNotReady const tooEarly;
  Animal<18>::makerFails = true;
  EXPECT_THROW(Animal<18>::_fwkType(), Vyx::InternalException);
  Animal<18>::makerFails = false;
  EXPECT_EQ("Animal", textOf(Animal<18>::_fwkType()->name()));
  EXPECT_EQ(2, Animal<18>::made);
}

TEST(Registration, RecordsAreNeverDestroyed) {
  VyxType const* const dog = Dog<19>::_fwkType();
  EXPECT_TRUE(dog->isNondestructing());
  { Vyx::Ptr<VyxType const> const held(dog); }
  EXPECT_EQ("Dog", textOf(dog->name()));
  for (VyxType const* type : VyxType::types()) EXPECT_TRUE(type->isNondestructing()) << type->fullTypeName();
}

TEST(Registration, TypesOfTheLibraryAreHeardOfInOrder) {
  auto const& heard = IntrospectionReactor::global()->heard();
  auto const from = std::find(heard.begin(), heard.end(), "type PbrActionType");
  ASSERT_NE(heard.end(), from);
  EXPECT_EQ("namespace Pbr", *(from - 1));
  std::vector<std::string> types;
  for (auto at = from; at != heard.end() && !at->starts_with("namespace"); ++at)
    if (at->starts_with("type ")) types.push_back(*at);
  EXPECT_THAT(types,
              ElementsAre("type PbrActionType", "type PbrFwdAction : Action", "type Dscp",
                          "type PbrActionSetDscp : Action", "type NexthopSet", "type NexthopIndex",
                          "type NexthopIndexAndL2AdjKey : Entity", "type PbrClassMapStatus : ClassMapStatus",
                          "type PbrActionContainer : Entity", "type Config : Entity",
                          "type Status : PolicyMapTypeStatus", "type PbrAclCheckpointStatus : Entity",
                          "type PbrAclTypeCheckpointStatus : Entity",
                          "type ClassMapCheckpointStatus : Entity", "type PolicyMapCheckpointStatus : Entity",
                          "type CheckpointAgentStatus : Entity", "type CheckpointStatus : Entity"));
}

} // namespace
