// What is left over of a text is refused, whatever the value that was read.

#include "Pbr/Dscp.h"
#include "support/TextForms.h"

namespace {

// How the text is refused as a T: message, ids, whether it was a text.
template <class T> std::string junk(char const* text) {
  try {
    Vyx::strepToValue<T>(Vyx::String8(text), static_cast<T*>(nullptr));
    return "read";
  } catch (Vyx::RangeException const& error) {
    std::ostringstream out;
    out << error.what();
    for (std::size_t id = 0; id < error.ids().size(); ++id)
      if (error.ids().test(id)) out << " #" << id;
    out << (error.fromText() ? " of a text" : "");
    return out.str();
  }
}

TEST(Junk, IsToldByItsColumn) {
  EXPECT_EQ("junk at column 2 deserializing 10x #12 of a text", junk<Pbr::Dscp>("10x"));
  EXPECT_EQ("junk at column 2 deserializing 10  #12 of a text", junk<Pbr::Dscp>("10 "));
  EXPECT_EQ("read", junk<Pbr::Dscp>("10"));
}

TEST(Junk, IsNotLookedForBehindAValueThatIsRefused) {
  EXPECT_EQ("Dscp::value < Dscp::min or > Dscp::invalid not allowed #12", junk<Pbr::Dscp>("65x"));
}

// A value that counts how many of it live.
struct Counted {
  Counted(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const&) {
    ++at;
    ++alive;
  }
  Counted(Counted const&) { ++alive; }
  ~Counted() { --alive; }
  static inline int alive = 0;
};

TEST(Junk, LeavesNoValueBehind) {
  EXPECT_EQ("junk at column 1 deserializing ab #12 of a text", junk<Counted>("ab"));
  EXPECT_EQ(0, Counted::alive);
}

} // namespace
