#include "Vyx/ValidPtr.h"

#include <gtest/gtest.h>

namespace {

struct Thing final : Vyx::PtrInterface {
  explicit Thing(int id) : id(id) {}
  int const id;
};

TEST(ValidPtr, NullIsToldToTheLetter) {
  try {
    Vyx::validPtr(Vyx::Ptr<Thing>());
    ADD_FAILURE() << "nothing was thrown";
  } catch (Vyx::RangeException const& error) {
    EXPECT_STREQ("null ValidPtr", error.what());
  }
}

TEST(ValidPtr, PassesOnWhatIsThere) {
  auto const thing = Vyx::ptrFromNew(new Thing(1));
  EXPECT_EQ(thing, Vyx::validPtr(thing));
  EXPECT_EQ(1U, thing->references());
}

TEST(ValidPtr, MadeObjectHasOneHolder) {
  auto const thing = Vyx::make<Thing>(3);
  EXPECT_EQ(3, thing->id);
  EXPECT_EQ(1U, thing->references());
}

} // namespace
