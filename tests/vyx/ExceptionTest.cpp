#include "Vyx/Exception.h"

#include <gtest/gtest.h>

namespace {

using Vyx::Exception;
using Vyx::RangeException;

template <class Raised, class Call> void expectRaises(char const* message, Call call) {
  try {
    call();
    ADD_FAILURE() << "nothing was thrown";
  } catch (Raised const& error) {
    EXPECT_STREQ(message, error.what());
    EXPECT_STREQ(message, static_cast<std::exception const&>(error).what());
    EXPECT_EQ(message, static_cast<Exception const&>(error).message());
  }
}

TEST(Exceptions, AreRaisedWithTheirTextToTheLetter) {
  expectRaises<RangeException>("null ValidPtr", [] { Vyx::throwRangeException("null ValidPtr"); });
  expectRaises<Vyx::InternalException>("100%s", [] { Vyx::throwInternalException("100%s"); });
  expectRaises<Vyx::NameInUseException>("a name", [] { Vyx::throwNameInUseException("a name"); });
}

TEST(Exceptions, RangeExceptionHoldsTheRangeId) {
  Exception::IdBitArray expected;
  expected.set(12);
  EXPECT_EQ(expected, RangeException("x").ids());
  EXPECT_FALSE(RangeException("x").fromText());
}

TEST(Exceptions, AttributeNameIsPutInFront) {
  expectRaises<RangeException>("value: no number",
                               [] { Vyx::rethrowFromDeserializeAttr(RangeException("no number"), "value"); });
}

TEST(Exceptions, RaisedAnewKeepsIdsAndOrigin) {
  Exception::IdBitArray ids;
  ids.set(48);
  try {
    Vyx::rethrowFromDeserializeAttr(RangeException("x", ids, true), "value");
  } catch (RangeException const& error) {
    EXPECT_EQ(ids, error.ids());
    EXPECT_TRUE(error.fromText());
  }
}

TEST(Exceptions, MessageOutlivesTheTextItWasMadeFrom) {
  try {
    std::string const text(300, 'm');
    Vyx::throwRangeException(text.c_str());
  } catch (RangeException const& error) {
    EXPECT_EQ(std::string(300, 'm'), error.what());
  }
}

TEST(Exceptions, ExpectTellsItsId) {
  Vyx::Expect const expect(Exception::kRange);
  EXPECT_EQ(12U, expect.id());
}

} // namespace
