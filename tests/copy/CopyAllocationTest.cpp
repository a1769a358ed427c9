// What a copy takes from the heap.

#include "CopyFixture.h"
#include "support/Allocations.h"

namespace {

class CopyAllocationTest : public CopyTest {
protected:
  void SetUp() override {
    for (unsigned i = 0; i < 20; ++i) {
      std::string const name = "a name that is not short " + std::to_string(i);
      addRules(*addClassMap(*src, name.c_str()), {"ip any any", "ip 10.0.0.0/8 any"});
      addForward(*src, *addPolicyMap(*src, name.c_str()), "web", i + 1, {"10.0.0.1", "10.0.0.2"});
    }
  }
  std::size_t taken() {
    return allocations::takenBy([&] { changed = handler->handleEntity(plain, dest, src, path); });
  }

  Vyx::Ptr<EntityCopy> const plain = Cli::Session::entityCopyFactory();
  Vyx::String8 const path = "session";
  bool changed = false;
};

// Each run makes one handler for its policy maps.
TEST_F(CopyAllocationTest, OntoAnEqualTreeTakesTheHandlerAlone) {
  EXPECT_LT(100U, taken());
  EXPECT_EQ(1U, taken());
  EXPECT_FALSE(changed);
}

} // namespace
