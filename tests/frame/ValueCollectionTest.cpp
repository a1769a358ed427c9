#include "ShopListeners.h"

#include "support/Invariants.h"
#include "support/Walks.h"

namespace {

// The claims hold for a table and for a tree alike: `Prices` and `Labels` say the same of each.
struct Prices {
  using Value = double;
  static constexpr char const* name = "price";
  static constexpr int id = 268;
  static unsigned key(unsigned n) { return n; }
  static double value(unsigned n) { return n; }
  static void is(Shop::Shelf& of, unsigned n, unsigned value) { of.priceIs(n, value); }
  static double get(Shop::Shelf& of, unsigned n) { return of.price(n); }
  static double del(Shop::Shelf& of, unsigned n) { return of.priceDel(n); }
  static auto add(Shop::Shelf& of, unsigned n, unsigned value) { return of.newPrice(n, value); }
  static void notify(Shop::Shelf& of, unsigned n) { of.priceNotify(n); }
  static auto at(Shop::Shelf& of) { return of.priceIterator(); }
  static auto at(Shop::Shelf& of, unsigned n) { return of.priceIterator(n); }
  static double delAt(Shop::Shelf& of, Shop::Shelf::PriceIterator& at) { return of.priceDel(at); }
  static void delAll(Shop::Shelf& of) { of.priceDelAll(); }
  static unsigned count(Shop::Shelf& of) { return of.prices(); }
};

struct Labels {
  using Value = Vyx::String8;
  static constexpr char const* name = "label";
  static constexpr int id = 269;
  static Vyx::Name key(unsigned n) { return Vyx::valueToStrep(n); }
  static Vyx::String8 value(unsigned n) { return n ? Vyx::valueToStrep(n) : Vyx::String8(); }
  static void is(Shop::Shelf& of, unsigned n, unsigned v) { of.labelIs(key(n), value(v)); }
  static Vyx::String8 get(Shop::Shelf& of, unsigned n) { return of.label(key(n)); }
  static Vyx::String8 del(Shop::Shelf& of, unsigned n) { return of.labelDel(key(n)); }
  static auto add(Shop::Shelf& of, unsigned n, unsigned v) { return of.newLabel(key(n), value(v)); }
  static void notify(Shop::Shelf& of, unsigned n) { of.labelNotify(key(n)); }
  static auto at(Shop::Shelf& of) { return of.labelIterator(); }
  static auto at(Shop::Shelf& of, unsigned n) { return of.labelIterator(key(n)); }
  static Vyx::String8 delAt(Shop::Shelf& of, Shop::Shelf::LabelIterator& at) { return of.labelDel(at); }
  static void delAll(Shop::Shelf& of) { of.labelDelAll(); }
  static unsigned count(Shop::Shelf& of) { return of.labels(); }
};

template <class C> class ValueCollection : public ShelfTest {
protected:
  ~ValueCollection() override { checkInvariants(*shelf); }

  // Enters 1, 2, 3 with the values 10, 20, 30, unheard.
  void fill() {
    for (unsigned n : {1U, 2U, 3U}) C::is(*shelf, n, n * 10);
    told();
  }
  // "price 3" for 3; what is told of each of the keys, in the order of a walk.
  static std::string line(std::string const& key) { return std::string(C::name) + " " + key; }
  std::string linesInOrder() {
    Heard lines;
    for (auto at = C::at(*shelf); at; ++at) lines.note(line(printed(at.key())));
    return lines.take();
  }
};

using Collections = testing::Types<Prices, Labels>;
TYPED_TEST_SUITE(ValueCollection, Collections);

TYPED_TEST(ValueCollection, NewKeyIsInsertedAndTold) {
  TypeParam::is(*this->shelf, 4, 40);
  EXPECT_EQ(this->line("4"), this->told());
  EXPECT_EQ(TypeParam::value(40), TypeParam::get(*this->shelf, 4));
  EXPECT_EQ(1U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, NewKeyWithTheZeroValueIsToldToo) {
  TypeParam::is(*this->shelf, 4, 0);
  EXPECT_EQ(this->line("4"), this->told());
  EXPECT_EQ(1U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, EqualValueDoesNothing) {
  this->fill();
  auto const before = TypeParam::at(*this->shelf).version();
  TypeParam::is(*this->shelf, 2, 20);
  EXPECT_EQ("", this->told());
  EXPECT_EQ(before, TypeParam::at(*this->shelf).version());
}

TYPED_TEST(ValueCollection, OtherValueIsStoredInThePlaceOfTheOldAndTold) {
  this->fill();
  auto const record = TypeParam::at(*this->shelf, 2).member();
  TypeParam::is(*this->shelf, 2, 21);
  EXPECT_EQ(this->line("2"), this->told());
  EXPECT_EQ(TypeParam::value(21), record->value());
  EXPECT_EQ(record, TypeParam::at(*this->shelf, 2).member());
  EXPECT_EQ(3U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, AbsentKeyReadsAsZero) {
  this->fill();
  EXPECT_EQ(typename TypeParam::Value(), TypeParam::get(*this->shelf, 4));
}

TYPED_TEST(ValueCollection, NewRecordIsEnteredAndNobodyIsTold) {
  auto const record = TypeParam::add(*this->shelf, 5, 50);
  EXPECT_EQ("", this->told());
  EXPECT_EQ(TypeParam::value(50), TypeParam::get(*this->shelf, 5));
  EXPECT_EQ(2U, record->references());
}

TYPED_TEST(ValueCollection, NotifyTellsOfAnyKey) {
  TypeParam::notify(*this->shelf, 9);
  EXPECT_EQ(this->line("9"), this->told());
}

TYPED_TEST(ValueCollection, RemovalReturnsTheValueAndIsTold) {
  this->fill();
  EXPECT_EQ(TypeParam::value(20), TypeParam::del(*this->shelf, 2));
  EXPECT_EQ(this->line("2"), this->told());
  EXPECT_EQ(2U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, MemberIsGoneWhenTheReactorsRun) {
  this->fill();
  auto seen = TypeParam::value(1);
  this->listener->during = [&] { seen = TypeParam::get(*this->shelf, 2); };
  TypeParam::del(*this->shelf, 2);
  EXPECT_EQ(typename TypeParam::Value(), seen);
}

TYPED_TEST(ValueCollection, RemovalOfAnAbsentKeyReturnsZeroAndIsNotTold) {
  this->fill();
  EXPECT_EQ(typename TypeParam::Value(), TypeParam::del(*this->shelf, 4));
  EXPECT_EQ("", this->told());
  EXPECT_EQ(3U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, RemovalUnderAnIteratorIsToldWithTheMembersKey) {
  this->fill();
  auto at = TypeParam::at(*this->shelf, 2);
  EXPECT_EQ(TypeParam::value(20), TypeParam::delAt(*this->shelf, at));
  EXPECT_EQ(this->line("2"), this->told());
  EXPECT_EQ(TypeParam::value(20), at.value());
}

TYPED_TEST(ValueCollection, RemovalUnderAnIteratorOnNoMemberDoesNothing) {
  auto at = TypeParam::at(*this->shelf);
  EXPECT_EQ(typename TypeParam::Value(), TypeParam::delAt(*this->shelf, at));
  EXPECT_EQ("", this->told());
}

TYPED_TEST(ValueCollection, IteratorGoesOnAfterTheRemoval) {
  this->fill();
  auto at = TypeParam::at(*this->shelf);
  std::string const rest = keysFrom(++TypeParam::at(*this->shelf));
  TypeParam::delAt(*this->shelf, at);
  EXPECT_EQ(rest, keysFrom(++at));
}

TYPED_TEST(ValueCollection, RemovalOfAllTellsOfEachKeyInOrderAndNeverWithoutAKey) {
  this->fill();
  std::string const each = this->linesInOrder();
  TypeParam::delAll(*this->shelf);
  EXPECT_EQ(each, this->told());
  EXPECT_EQ(0U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, RemovalOfAllFromNothingIsNotTold) {
  TypeParam::delAll(*this->shelf);
  EXPECT_EQ("", this->told());
}

TYPED_TEST(ValueCollection, RemovalOfAllBearsAReactorThatRemoves) {
  this->fill();
  bool once = true;
  this->listener->during = [&] {
    if (!std::exchange(once, false)) return;
    auto at = TypeParam::at(*this->shelf);
    TypeParam::delAt(*this->shelf, at);
  };
  std::string const each = this->linesInOrder();
  TypeParam::delAll(*this->shelf);
  EXPECT_EQ(each, this->told());
  EXPECT_EQ(0U, TypeParam::count(*this->shelf));
}

TYPED_TEST(ValueCollection, RemovedValueIsReadAfterTheRound) {
  this->fill();
  this->listener->during = [&] { this->listener->notifierIs(nullptr); };
  EXPECT_EQ(TypeParam::value(30), TypeParam::del(*this->shelf, 3));
}

TYPED_TEST(ValueCollection, ExceptionOfAReactorComesBackWithTheAttributesId) {
  this->listener->during = [] { throw 1; };
  TypeParam::is(*this->shelf, 4, 40);
  TypeParam::del(*this->shelf, 4);
  std::string const one = this->line("4") + " !" + std::to_string(TypeParam::id);
  EXPECT_EQ(one + " " + one, this->told());
}

TYPED_TEST(ValueCollection, IteratorKeepsTheOwnerAlive) {
  Vyx::Ptr<Shop::Shelf> other = Shop::shelfFactory("other");
  TypeParam::is(*other, 1, 10);
  auto at = TypeParam::at(*other);
  Shop::Shelf* const raw = other.ptr();
  other = nullptr;
  EXPECT_EQ(1U, raw->references());
  EXPECT_EQ(TypeParam::value(10), at.value());
}

} // namespace
