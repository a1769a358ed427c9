// The handlers' functions and attributes, called without knowing their types.

#include "CopyFixture.h"
#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"

namespace {

using Vyx::GenericIf;
using Op = GenericIf::AttributeOp;
using List = GenericIf::List_;

template <class T> Vyx::Ptr<GenericIf> on(Vyx::Ptr<T> const& entity) { return Vyx::wrap(entity); }

class HandlerReflectionTest : public CopyTest {
protected:
  void SetUp() override { hooks->configIs(dest); }

  Vyx::Ptr<GenericIf> call(Vyx::Ptr<GenericIf> const& of, Vyx::AttributeId id) {
    return of->attributeOp({id, Op::read}, arguments, nullptr);
  }
  void argument(char const* name, Vyx::Ptr<GenericIf> const& value) { arguments->argumentIs(name, value); }
  void handleEntityArguments() {
    argument("ec", on(ec));
    argument("dest", on(dest));
    argument("src", on(Vyx::Ptr<Pbr::Config const>(src)));
    argument("path", Vyx::wrap(Vyx::String8("by/reflection")));
  }

  Vyx::Ptr<List> const arguments = Vyx::make<List>();
  Vyx::Ptr<Pbr::PolicyMapCopyHandler> const hooks = Pbr::policyMapCopyHandlerFactory();
};

TEST_F(HandlerReflectionTest, HandleEntityCopiesAndAnswers) {
  addClassMap(*src, "web");
  handleEntityArguments();
  EXPECT_TRUE(Vyx::unwrap<bool>(*call(on(handler), 258)));
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_FALSE(Vyx::unwrap<bool>(*call(on(handler), 258)));
  EXPECT_THAT(ec->calls, ElementsAreArray(Lines(2, "ClassMapConfig 'by/reflection'")));
}

TEST_F(HandlerReflectionTest, HandleEntityIsFoundByName) {
  EXPECT_EQ(258, on(handler)->attributeId("handleEntity"));
  EXPECT_EQ(515, on(hooks)->attributeId("updateActionPtrs"));
  EXPECT_EQ(517, on(hooks)->attributeId("subConfigDelete"));
  EXPECT_EQ(642, on(hooks)->attributeId("config"));
}

TEST_F(HandlerReflectionTest, HandleEntityKnowsNoOtherArgument) {
  handleEntityArguments();
  argument("filter", Vyx::wrap(true));
  EXPECT_EQ("unknown argument of handleEntity",
            messageOf<Vyx::UnknownArgException>([&] { call(on(handler), 258); }));
}

TEST_F(HandlerReflectionTest, HandleEntityNeedsItsPath) {
  argument("ec", on(ec));
  argument("dest", on(dest));
  argument("src", on(src));
  EXPECT_EQ("missing or of the wrong type: path",
            messageOf<Vyx::TypeException>([&] { call(on(handler), 258); }));
}

TEST_F(HandlerReflectionTest, FunctionsAreOnlyRead) {
  EXPECT_THROW(on(handler)->attributeOp({258, Op::write}, arguments, nullptr), Vyx::OpNotSupportedException);
  EXPECT_THROW(on(hooks)->attributeOp({515, Op::memberCount}, arguments, nullptr),
               Vyx::OpNotSupportedException);
}

TEST_F(HandlerReflectionTest, UpdateActionPtrsBindsAndAnswersNothing) {
  auto const from = addPolicyMap(*src, "edge");
  addForward(*src, *from, "web", 1);
  auto const to = addPolicyMap(*dest, "edge");
  to->classActionIs("web");
  argument("ec", on(ec));
  argument("dest", on(to));
  argument("src", on(from));
  EXPECT_EQ(nullptr, call(on(hooks), 515));
  EXPECT_EQ(dest->pbrActions()->fwdAction(idOf(1)),
            to->classAction("web")->policyAction(PolicyMap::actionPbrForward));
}

TEST_F(HandlerReflectionTest, UpdateActionPtrsTakesMissingArgumentsForNull) {
  EXPECT_EQ(nullptr, call(on(hooks), 515));
}

TEST_F(HandlerReflectionTest, UpdateActionPtrsRefusesAnEntityOfAnotherType) {
  argument("dest", on(dest));
  EXPECT_THROW(call(on(hooks), 515), Vyx::TypeException);
}

TEST_F(HandlerReflectionTest, SubConfigDeleteDeletes) {
  addForward(*dest, *addPolicyMap(*dest, "edge"), "web", 1);
  argument("dest", on(dest->pmapType()->pmap("edge")));
  argument("id", Vyx::wrap(idOf(1)));
  EXPECT_EQ(nullptr, call(on(hooks), 517));
  EXPECT_EQ(0U, dest->pmapType()->pmap("edge")->subconfigs());
  EXPECT_EQ(0U, dest->pbrActions()->fwdActions());
  dest->pmapType()->pmap("edge")->currentSubConfigIs(nullptr);
}

TEST_F(HandlerReflectionTest, ConfigIsReadAndWritten) {
  auto const read = [&] { return on(hooks)->attributeOp({642, Op::read}, nullptr, nullptr); };
  EXPECT_EQ(dest, Vyx::unwrap<ConfigPtr>(*read()));
  on(hooks)->attributeOp({642, Op::write}, nullptr, on(src));
  EXPECT_EQ(src, hooks->config());
  EXPECT_EQ(src, Vyx::unwrap<ConfigPtr>(*read()));
  EXPECT_THROW(on(hooks)->attributeOp({642, Op::write}, nullptr, on(dir)), Vyx::TypeException);
  EXPECT_EQ(src, hooks->config());
}

TEST_F(HandlerReflectionTest, DirectorysChildIsReadAndDeleted) {
  Vyx::Ptr<GenericIf> const directory = on(dir);
  auto const child = directory->attributeOp({258, Op::read}, nullptr, nullptr);
  EXPECT_EQ(handler, Vyx::unwrap<Vyx::Ptr<Pbr::ConfigCopyHandler>>(*child));
  EXPECT_TRUE(Vyx::unwrap<bool>(*directory->attributeOp({258, Op::del}, nullptr, nullptr)));
  EXPECT_EQ(nullptr, dir->configHandler());
  EXPECT_EQ(nullptr, directory->attributeOp({258, Op::read}, nullptr, nullptr));
}

} // namespace
