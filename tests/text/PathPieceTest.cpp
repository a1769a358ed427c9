#include "Vyx/PathPiece.h"

#include "support/Random.h"

namespace {

using Vyx::escapedPiece;
using Vyx::unescapedPiece;

TEST(PathPiece, SlashPercentBlankAndControlBytesAreEscaped) {
  EXPECT_EQ("a%2Fb", escapedPiece("a/b"));
  EXPECT_EQ("100%25", escapedPiece("100%"));
  EXPECT_EQ("a%20b", escapedPiece("a b"));
  EXPECT_EQ("%00%0A%1F%7F", escapedPiece(std::string_view("\0\n\x1f\x7f", 4)));
  EXPECT_EQ("caf\xc3\xa9-1.2:3_[]", escapedPiece("caf\xc3\xa9-1.2:3_[]"));
}

TEST(PathPiece, HexadecimalOfEitherCaseIsTakenBack) { EXPECT_EQ("a/b/c", unescapedPiece("a%2Fb%2fc")); }

TEST(PathPiece, PercentWithoutTwoDigitsStandsForItself) {
  for (char const* piece : {"%", "%2", "%zz", "%2g", "%-1", "% 1", "a%"})
    EXPECT_EQ(piece, unescapedPiece(piece));
}

TEST(PathPiece, AnyBytesComeBack) {
  Random random;
  for (int round = 0; round < 1000; ++round) {
    std::string piece;
    while (!random.oneIn(8)) piece += static_cast<char>(random.below(256));
    EXPECT_EQ(piece, unescapedPiece(escapedPiece(piece)));
    EXPECT_EQ(std::string::npos, escapedPiece(piece).find_first_of(" /"));
  }
}

} // namespace
