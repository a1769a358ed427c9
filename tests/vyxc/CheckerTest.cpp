#include "SchemaFixture.h"

namespace vyxc {
namespace {

class CheckerTest : public SchemaFixture {
protected:
  // The ids of an entity's own attributes, as `name=id …`.
  std::string ids(std::string const& typeName) const {
    std::string result;
    for (auto const& attribute : type(typeName).attributes) {
      if (!result.empty()) result += ' ';
      result += attribute.name + '=' + std::to_string(attribute.id);
    }
    return result;
  }

  static std::string shown(std::vector<Expr> const& arguments) {
    std::string result;
    for (auto const& argument : arguments) result += (result.empty() ? "" : ", ") + argument.text;
    return result;
  }
};

constexpr char kThreeLevels[] = R"(
entity A : Vyx::Entity {
  constructor (className: Vyx::Name, id: U32)
  base (className)
  key id: U32
  const className: Vyx::Name
  const id: U32
  function same(other: const A) const -> bool
}
entity B : A {
  constructor (className: Vyx::Name, id: U32, size: U8)
  const size: U8
  function same(other: const A) const -> bool
  mutable open: bool
}
entity C : B {
  constructor ()
  base ("c", 1, 2)
  mutable color: U8
  function same(other: const A) const -> bool
}
)";

TEST_F(CheckerTest, IdsCountFromTwoInTheBlockOfTheLevel) {
  compile("A B C", kThreeLevels);
  EXPECT_EQ("className=258 id=259 same=260", ids("A"));
  EXPECT_EQ("color=514 same=260", ids("C"));
}

TEST_F(CheckerTest, RedefinitionKeepsItsIdAndUsesNone) {
  compile("A B C", kThreeLevels);
  EXPECT_EQ("size=386 same=260 open=387", ids("B"));
  EXPECT_EQ("A", attribute("C", "same").redefined->name);
  EXPECT_EQ(nullptr, attribute("A", "same").redefined);
}

TEST_F(CheckerTest, ExplicitIdDoesNotAdvanceTheCounter) {
  compile("A", "entity A : Vyx::Entity { constructor () mutable a: U8 mutable b: U8 @300 mutable c: U8 }");
  EXPECT_EQ("a=258 b=300 c=259", ids("A"));
}

TEST_F(CheckerTest, LevelsUnderAHandWrittenBaseCountOnFromIt) {
  compile("A", "extern entity X::P : Vyx::Entity in \"X/P.h\" extern entity X::Q : X::P in \"X/Q.h\"\n"
               "entity A : X::Q { constructor () mutable a: U8 }");
  EXPECT_EQ("a=514", ids("A"));
}

TEST_F(CheckerTest, ValueAttributesCountFromTwoConstantsToo) {
  compile("V", "value V in \"N/V.h\" { constructor (a: U8) collection m[U8]: bool member a: U8 "
               "computed hash: U32 constant max: U8 = 63 operators all }");
  auto const& value = type<ValueType>("V");
  ASSERT_EQ("", errors());
  EXPECT_EQ(2u, value.attributes.at(0).id);
  EXPECT_EQ(5u, value.attributes.at(3).id);
  EXPECT_EQ(63u, value.attributes.at(3).initial->number);
  EXPECT_EQ(Operators::kAll, value.operators);
}

TEST_F(CheckerTest, NamesAreLookedUpInTheNamespaceAndThoseAround) {
  compileFiles(
      {write("a.vyx", "namespace A::B\nextern value A::V in \"A/V.h\"\nextern value A::B::W in \"A/B/W.h\"\n"
                      "unit U header \"U.h\" { E }\nentity E : Vyx::Entity { constructor ()\n"
                      "mutable a: V mutable b: W mutable c: B::W mutable d: A::B::W }")});
  ASSERT_EQ("", errors());
  EXPECT_EQ("A::V", attribute("E", "a").type->qualifiedName());
  EXPECT_EQ("A::B::W", attribute("E", "c").type->qualifiedName());
}

TEST_F(CheckerTest, TypesMayBeUsedBeforeTheyAreDeclared) {
  compile("A B",
          "entity A : B { constructor () child other: B = () } entity B : Vyx::Entity { constructor () }");
  EXPECT_EQ("", errors());
  EXPECT_EQ(2u, type("A").level);
}

TEST_F(CheckerTest, TypesOfIndirectImportsAreSeen) {
  write("deep.vyx", "namespace N extern value D::V in \"D/V.h\"");
  write("middle.vyx", "namespace N import \"deep.vyx\"");
  compile("A", "import \"middle.vyx\" entity A : Vyx::Entity { constructor () mutable a: D::V }");
  EXPECT_EQ("", errors());
}

TEST_F(CheckerTest, NothingIsGeneratedForImportedTypes) {
  write("other.vyx", "namespace N unit O header \"N/O.h\" { P } entity P : Vyx::Entity { constructor () }");
  compile("A", "import \"other.vyx\" entity A : P { constructor () }");
  ASSERT_EQ("", errors());
  EXPECT_EQ(1u, model().unit.types.size());
  EXPECT_FALSE(type("A").base->inUnit);
}

TEST_F(CheckerTest, FilesOfOneCommandLineAreOneUnit) {
  auto const first = write("a.vyx", "namespace N unit U header \"N/U.h\" { B A } enum A { a = 1 }");
  auto const second = write("b.vyx", "namespace N entity B : Vyx::Entity { constructor () mutable a: A }");
  compileFiles({first, second});
  ASSERT_EQ("", errors());
  EXPECT_EQ("B", model().unit.types.at(0)->name);
  EXPECT_EQ("b.vyx", model().schemaOf.at(model().unit.types.at(0)));
}

TEST_F(CheckerTest, FilesOfOneUnitMayImportEachOther) {
  auto const first = write("a.vyx", "namespace N unit U header \"N/U.h\" { A B } enum A { a = 1 }");
  auto const second = write("b.vyx", "namespace N import \"a.vyx\"\n"
                                     "entity B : Vyx::Entity { constructor () mutable a: A }");
  compileFiles({first, second});
  ASSERT_EQ("", errors());
  EXPECT_EQ(2u, model().unit.types.size());
  EXPECT_TRUE(model().unit.imported.empty());
}

TEST_F(CheckerTest, MakerOfAMemberGivesAllButAMadeName) {
  compile("A B",
          "entity A : Vyx::Entity { constructor () children b[id]: B named by size children c[id]: B }\n"
          "entity B : Vyx::Entity { constructor (name: Vyx::Name, id: U32, size: U8) key id: U32\n"
          "const id: U32 const size: U8 }");
  ASSERT_EQ("", errors());
  EXPECT_EQ("size", attribute("A", "b").namedBy);
  EXPECT_EQ("", attribute("A", "c").namedBy);
}

TEST_F(CheckerTest, AFileNamedAndImportedIsReadOnce) {
  auto const second = write("b.vyx", "namespace N enum B { b = 1 }");
  compileFiles({write("a.vyx", "namespace N import \"b.vyx\" unit U header \"N/U.h\" { B }"), second});
  EXPECT_EQ("", errors());
}

TEST_F(CheckerTest, ExternMayBeRepeatedInAnImport) {
  write("other.vyx", "namespace N extern value D::V in \"D/V.h\" by reference");
  compile("A", "import \"other.vyx\" extern value D::V in \"D/V.h\" by reference enum A { a = 1 }");
  EXPECT_EQ("", errors());
}

TEST_F(CheckerTest, BaseGetsTheNameIfThereIsOne) {
  compile("A", "entity A : Vyx::Entity { constructor (name: Vyx::Name, type: U8) const type: U8 }");
  EXPECT_EQ("name", shown(type("A").baseArguments));
}

TEST_F(CheckerTest, BaseGetsWhatTheTypeDoesNotKeepItself) {
  compile("A B C", kThreeLevels);
  EXPECT_EQ("className, id", shown(type("B").baseArguments));
}

TEST_F(CheckerTest, ArgumentsAreQualified) {
  compile("T A B",
          "enum T { one = 1 } entity A : Vyx::Entity { constructor (type: T) base () const type: T }\n"
          "entity B : Vyx::Entity { constructor () child a: A = (one) child b: A }");
  ASSERT_EQ("", errors());
  EXPECT_EQ("N::one", shown(*attribute("B", "a").arguments));
  EXPECT_FALSE(attribute("B", "b").arguments);
}

TEST_F(CheckerTest, KeyTypesComeFromTheMember) {
  compile("A B C D", std::string(kThreeLevels) +
                         "entity D : Vyx::Entity { constructor () base () children b[id]: B tree\n"
                         "references a[className]: A reference current: B in b }");
  ASSERT_EQ("", errors());
  EXPECT_EQ("U32", attribute("D", "b").keyType->name);
  EXPECT_TRUE(attribute("D", "b").isTree);
  EXPECT_EQ("Vyx::Name", attribute("D", "a").keyType->qualifiedName());
  EXPECT_EQ("b", attribute("D", "current").within->name);
}

TEST_F(CheckerTest, AttributeMayBeCalledLikeAMemberWord) {
  compile(
      "A",
      "entity A : Vyx::Entity { constructor (type: U8) const type: U8 mutable key: U8 mutable child: U8 }");
  EXPECT_EQ("type=258 key=259 child=260", ids("A"));
}

TEST_F(CheckerTest, DocumentationIsKept) {
  compile("A", "// An enum.\nenum A {\n  // The first.\n  a = 1\n}\n");
  EXPECT_EQ("An enum.\n", type<EnumType>("A").doc);
  EXPECT_EQ("The first.\n", type<EnumType>("A").enumerators.at(0).doc);
}

TEST_F(CheckerTest, MissingFileIsTold) {
  compileFiles({(folder_ / "none.vyx").string()});
  EXPECT_EQ((folder_ / "none.vyx").string() + ": error: cannot be read: No such file or directory\n",
            errors());
}

TEST_F(CheckerTest, DirectoryIsTold) {
  compileFiles({folder_.string()});
  EXPECT_EQ(folder_.string() + ": error: is a directory\n", errors());
}

TEST_F(CheckerTest, NulByteIsTold) {
  compileFiles({write("a.vyx", std::string("namespace\0N", 11))});
  EXPECT_NE(std::string::npos, errors().find("a.vyx:1:10: error: NUL byte; this is no text\nnamespace?N\n"));
}

TEST_F(CheckerTest, InvalidUtf8IsTold) {
  compileFiles({write("a.vyx", "namespace N // \xFF")});
  EXPECT_NE(std::string::npos, errors().find("a.vyx:1:16: error: not UTF-8 from here on\n"));
}

TEST_F(CheckerTest, ImportsNestedWithoutEndAreRefused) {
  for (int i = 0; i < 300; ++i) {
    write(std::to_string(i) + ".vyx", "namespace N import \"" + std::to_string(i + 1) + ".vyx\"");
  }
  compileFiles({(folder_ / "0.vyx").string()});
  EXPECT_NE(std::string::npos, errors().find("imports are nested too deeply"));
}

// A line of entities, each derived from the one before.
std::string lineOf(int length, std::string& list) {
  std::string body = "entity E0 : Vyx::Entity { constructor () }\n";
  list = "E0";
  for (int i = 1; i < length; ++i) {
    auto const number = std::to_string(i);
    body += "entity E" + number + " : E" + std::to_string(i - 1) + " { constructor () mutable a" + number +
            ": U8 }\n";
    list += " E" + number;
  }
  return body;
}

TEST_F(CheckerTest, HundredsOfLevelsAreNumbered) {
  std::string list;
  auto const body = lineOf(250, list);
  compile(list, body);
  ASSERT_EQ("", errors());
  EXPECT_EQ("a249=" + std::to_string(251 * 128 + 2), ids("E249"));
}

TEST_F(CheckerTest, ThousandsOfLevelsAreRefused) {
  std::string list;
  auto const body = lineOf(5000, list);
  compile(list, body);
  EXPECT_NE(std::string::npos, errors().find("`E250` is more than 250 levels below Vyx::Entity"));
}

} // namespace
} // namespace vyxc
