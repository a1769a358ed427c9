#include "vyxc/Parser.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

namespace vyxc {
namespace {

class ParserTest : public testing::Test {
protected:
  ast::File parse(std::string text) {
    source_.emplace("test.vyx", std::move(text));
    return Parser(*source_, diagnostics_).parse();
  }

  // The member of the one entity of a file whose only line of content is `line`.
  ast::Member member(std::string const& line) {
    auto const file = parse("namespace N\nentity E : Vyx::Entity {\n" + line + "\n}\n");
    EXPECT_EQ("", errors());
    EXPECT_EQ(1u, file.types.at(0).members.size());
    return file.types.at(0).members.at(0);
  }

  std::string errors() const {
    std::ostringstream out;
    diagnostics_.print(out);
    return out.str();
  }

  std::optional<SourceFile> source_;
  Diagnostics diagnostics_;
};

TEST_F(ParserTest, NamespaceMayBeNested) {
  EXPECT_EQ("Cli::Session", parse("namespace Cli::Session").space.text);
}

TEST_F(ParserTest, ExternSaysHowAParameterIsPassed) {
  auto const file =
      parse("namespace N extern value A::B in \"A/B.h\" by reference extern value C::D in \"C/D.h\"");
  EXPECT_EQ("A/B.h", file.externs.at(0).header.text);
  EXPECT_TRUE(file.externs.at(0).byReference);
  EXPECT_FALSE(file.externs.at(1).byReference);
}

TEST_F(ParserTest, UnitListsItsTypesInOrder) {
  auto const file = parse("namespace N unit U header \"N/U.h\" { B A }");
  EXPECT_EQ("B", file.units.at(0).types.at(0).text);
  EXPECT_EQ("A", file.units.at(0).types.at(1).text);
}

TEST_F(ParserTest, FunctionHasConstBeforeTypesAndBehindItself) {
  auto const function = member("function f(a: const A, b: B) const -> bool");
  EXPECT_TRUE(function.isConst);
  EXPECT_TRUE(function.parameters.at(0).type.isConst);
  EXPECT_FALSE(function.parameters.at(1).type.isConst);
  EXPECT_EQ("bool", function.type.name.text);
}

TEST_F(ParserTest, SuffixesStandInAnyOrder) {
  EXPECT_EQ(300u, member("mutable a: U8 virtual @300").id->value);
  EXPECT_TRUE(member("mutable a: U8 @300 virtual").isVirtual);
}

TEST_F(ParserTest, ChildWithArgumentsIsToldFromOneWithout) {
  EXPECT_FALSE(member("child a: A").hasArguments);
  EXPECT_TRUE(member("child a: A = ()").hasArguments);
  auto const child = member("child a: A = (\"x\", N::e, 7, true)");
  EXPECT_EQ(ast::ExprKind::kString, child.arguments.at(0).kind);
  EXPECT_EQ("N::e", child.arguments.at(1).text);
  EXPECT_EQ(7u, child.arguments.at(2).number);
  EXPECT_EQ(ast::ExprKind::kBool, child.arguments.at(3).kind);
}

TEST_F(ParserTest, KeyTakesBothItsWords) {
  auto const key = member("key id: U8 first unlisted");
  EXPECT_TRUE(key.isFirst);
  EXPECT_TRUE(key.isUnlisted);
}

TEST_F(ParserTest, ChildrenMayBeNamedByAParameter) {
  EXPECT_EQ("", member("children a[id]: A").namedBy.text);
  EXPECT_EQ("type", member("children a[id]: A named by type").namedBy.text);
  auto const both = member("children a[id]: A tree named by type @ 300");
  EXPECT_TRUE(both.isTree);
  EXPECT_EQ("type", both.namedBy.text);
  EXPECT_EQ(300u, both.id->value);
}

TEST_F(ParserTest, MemberWordsMayNameAttributes) {
  auto const file = parse("namespace N entity E : B { mutable key: U8 mutable child: U8 const mutable: U8 "
                          "function import() -> void mutable value: bool mutable entity: bool }");
  EXPECT_EQ("", errors());
  EXPECT_EQ(6u, file.types.at(0).members.size());
}

TEST_F(ParserTest, CommentAboveAnAttributeIsItsDocumentation) {
  EXPECT_EQ("First.\n second\n", member("// First.\n//  second\nmutable a: U8").doc);
}

TEST_F(ParserTest, ReadingGoesOnAtTheNextMember) {
  auto const file =
      parse("namespace N\nentity E : B {\n  mutable : U8\n  mutable b U8\n  mutable c: U8\n}\n");
  EXPECT_EQ(2u, diagnostics_.errors());
  EXPECT_EQ("c", file.types.at(0).members.at(0).name.text);
}

TEST_F(ParserTest, ReadingGoesOnAtTheNextItem) {
  auto const file = parse("namespace N\nentitty A : B {\n  mutable a: U8\n}\nenum E { e = 1 }\n");
  EXPECT_EQ(1u, diagnostics_.errors());
  EXPECT_EQ("E", file.types.at(0).name.text);
}

TEST_F(ParserTest, ReadingGoesOnAtTheNextEnumerator) {
  auto const file = parse("namespace N enum E { a 1 b = 2 c = = 3 d = 4 }");
  EXPECT_EQ(2u, diagnostics_.errors());
  EXPECT_EQ(2u, file.types.at(0).enumerators.size());
}

TEST_F(ParserTest, MissingBraceIsToldOnce) {
  auto const file = parse("namespace N\nentity A : B {\n  mutable a: U8\n\nentity C : B {\n}\n");
  EXPECT_EQ(1u, diagnostics_.errors());
  EXPECT_EQ(2u, file.types.size());
}

TEST_F(ParserTest, EmptyFileLacksItsNamespace) {
  parse("");
  EXPECT_EQ("test.vyx:1:1: error: expected `namespace`, not the end of the file\n\n^\n", errors());
}

TEST_F(ParserTest, TenMegabytesOfOpenBracesAreRefusedQuickly) {
  parse("namespace N entity E : B " + std::string(10u << 20, '{'));
  EXPECT_FALSE(diagnostics_.ok());
  EXPECT_LT(errors().size(), 1000u);
}

TEST_F(ParserTest, TenMegabytesOfOneWordAreRefused) {
  parse(std::string(10u << 20, 'x'));
  EXPECT_LT(errors().size(), 1000u);
}

} // namespace
} // namespace vyxc
