#include "ShopListeners.h"

#include "support/Invariants.h"

#include "Vyx/ValidPtr.h"

namespace {

class OwnedChild : public ShelfTest {
protected:
  ~OwnedChild() override { checkInvariants(*shelf); }
};

TEST_F(OwnedChild, FirstOneIsAttachedStoredAndTold) {
  auto const box = shelf->boxIs("red", Shop::fine);
  EXPECT_EQ("box", told());
  EXPECT_EQ(box, shelf->box());
  EXPECT_EQ(shelf, box->parent());
  EXPECT_EQ(270, box->parentAttrId());
  EXPECT_EQ(2U, box->references());
}

TEST_F(OwnedChild, SameParametersReturnTheChildThatIsThere) {
  auto const box = shelf->boxIs("red", Shop::fine);
  told();
  EXPECT_EQ(box, shelf->boxIs("red", Shop::fine));
  EXPECT_EQ("", told());
}

TEST_F(OwnedChild, OtherNameReplacesTheChild) {
  auto const red = shelf->boxIs("red", Shop::fine);
  told();
  auto const blue = shelf->boxIs("blue", Shop::fine);
  EXPECT_EQ("box", told());
  EXPECT_NE(red, blue);
  EXPECT_EQ(blue, shelf->box());
  EXPECT_FALSE(red->parent());
  EXPECT_EQ(1U, red->references());
}

TEST_F(OwnedChild, OtherParameterReplacesTheChildOfTheSameName) {
  auto const fine = shelf->boxIs("red", Shop::fine);
  told();
  EXPECT_NE(fine, shelf->boxIs("red", Shop::finest));
  EXPECT_EQ("box", told());
  EXPECT_FALSE(fine->parent());
}

TEST_F(OwnedChild, ReplacedChildHasNoParentWhenTheReactorsRun) {
  auto const red = shelf->boxIs("red", Shop::fine);
  bool detached = false;
  listener->during = [&] { detached = !red->parent() && shelf->box()->parent() == shelf; };
  shelf->boxIs("blue", Shop::fine);
  EXPECT_TRUE(detached);
}

TEST_F(OwnedChild, NewOneIsAttachedButNeitherStoredNorTold) {
  auto const box = shelf->newBox("red", Shop::fine);
  EXPECT_EQ("", told());
  EXPECT_EQ(shelf, box->parent());
  EXPECT_EQ(270, box->parentAttrId());
  EXPECT_FALSE(shelf->box());
  EXPECT_EQ(1U, box->references());
  box->parentIs(nullptr);
}

TEST_F(OwnedChild, RemovedOneIsReturnedDetachedAndTold) {
  auto const box = shelf->boxIs("red", Shop::fine);
  told();
  EXPECT_EQ(box, shelf->boxDel());
  EXPECT_EQ("box", told());
  EXPECT_FALSE(shelf->box());
  EXPECT_FALSE(box->parent());
  EXPECT_EQ(1U, box->references());
}

TEST_F(OwnedChild, RemovedOneIsGoneAndHasNoParentWhenTheReactorsRun) {
  auto const box = shelf->boxIs("red", Shop::fine);
  bool gone = false;
  listener->during = [&] { gone = !shelf->box() && !box->parent(); };
  shelf->boxDel();
  EXPECT_TRUE(gone);
}

TEST_F(OwnedChild, RemovalOfNoneReturnsNullAndIsNotTold) {
  EXPECT_FALSE(shelf->boxDel());
  EXPECT_EQ("", told());
}

TEST_F(OwnedChild, ExceptionOfAReactorComesBackWithTheAttributesId) {
  listener->during = [] { throw 1; };
  auto const box = shelf->boxIs("red", Shop::fine);
  EXPECT_EQ(box, shelf->box());
  shelf->boxDel();
  EXPECT_EQ("box !270 box !270", told());
}

TEST_F(OwnedChild, ReactorMayRemoveTheChildThatIsBeingTold) {
  listener->during = [&] { shelf->boxDel(); };
  auto const box = shelf->boxIs("red", Shop::fine);
  EXPECT_TRUE(box);
  EXPECT_FALSE(box->parent());
  EXPECT_FALSE(shelf->box());
  EXPECT_EQ("box box", told());
}

// A child that writes down how it is attached, and an owner that shows it to its reactors.
class Leaf : public Vyx::Entity {
public:
  static auto vyxParameters(Leaf const& of) { return std::tuple<Vyx::Name>(of.name()); }

  Vyx::ListRaw<NotifieeConst>& vyxReactors() const { return reactors_; }

  explicit Leaf(Vyx::Name name) : Entity(name) {
    if (name == "bad") Vyx::throwRangeException("bad leaf");
  }
  void parentAttrIdIs(Vyx::AttributeId id) override {
    log.note("parentAttrId " + std::to_string(id));
    Entity::parentAttrIdIs(id);
  }
  void parentIs(Vyx::Ptr<Vyx::Entity> const& parent) override {
    log.note(parent ? "parent" : "no parent");
    Entity::parentIs(parent);
  }

  static inline Heard log;

private:
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

class Twig : public Vyx::Entity {
public:
  class NotifieeConst : public frame::ReactorOn<Twig, Vyx::Entity::NotifieeConst> {
  public:
    virtual void onLeaf() { Leaf::log.note("told"); }
  };
  struct VyxAttrLeaf : frame::Child<Twig, Leaf, 300> {
    static auto& field(auto& of) { return of.leaf_; }
    static void tell(auto& reactor) { reactor.onLeaf(); }
  };
  Vyx::ListRaw<NotifieeConst>& vyxReactors() const { return reactors_; }
  Vyx::Ptr<Leaf> leaf() const { return leaf_; }

private:
  frame::ChildPtr<Leaf> leaf_;
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

class OwnedChildOrder : public testing::Test {
protected:
  using Attr = Twig::VyxAttrLeaf;
  OwnedChildOrder() { Leaf::log.take(); }

  Vyx::Ptr<Twig> const twig = Vyx::make<Twig>();
  Vyx::Ptr<Twig::NotifieeConst> const reactor = listen<Twig::NotifieeConst>(twig);
};

TEST_F(OwnedChildOrder, PlaceIsKnownBeforeTheParentAndBothBeforeTheRound) {
  frame::childIs<Attr>(*twig, Vyx::Name("a"));
  EXPECT_EQ("parentAttrId 300 parent told", Leaf::log.take());
}

TEST_F(OwnedChildOrder, OldChildLeavesBeforeTheNewOneIsMade) {
  auto const a = frame::childIs<Attr>(*twig, Vyx::Name("a"));
  Leaf::log.take();
  frame::childIs<Attr>(*twig, Vyx::Name("b"));
  EXPECT_EQ("no parent parentAttrId 300 parent told", Leaf::log.take());
}

TEST_F(OwnedChildOrder, RemovedChildLeavesBeforeTheRound) {
  frame::childIs<Attr>(*twig, Vyx::Name("a"));
  Leaf::log.take();
  frame::childDel<Attr>(*twig);
  EXPECT_EQ("no parent told", Leaf::log.take());
}

TEST_F(OwnedChildOrder, ConstructorThatThrowsLeavesNothingBehind) {
  EXPECT_EQ("bad leaf", rangeMessage([&] { frame::childIs<Attr>(*twig, Vyx::Name("bad")); }));
  EXPECT_FALSE(twig->leaf());
  EXPECT_EQ("", Leaf::log.take());
}

TEST(Factory, EntityBelongsToItsHolderAlone) {
  auto const box = Shop::boxFactory("red", Shop::fine);
  EXPECT_EQ(1U, box->references());
  EXPECT_FALSE(box->parent());
  EXPECT_EQ(136, box->parentAttrId());
  EXPECT_EQ("red", box->name());
}

TEST(Factory, NullPointerIsRefused) {
  EXPECT_EQ("null ValidPtr", rangeMessage([] { Vyx::validPtr(Vyx::Ptr<Shop::Box>()); }));
}

} // namespace
