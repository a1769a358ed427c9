// Tools list the types of the library from one section of its file, without loading it.

#include "ElfSection.h"
#include "Pbr/Config.h"
#include "RecordText.h"

#include <gmock/gmock.h>

#include <dlfcn.h>

namespace {

using testing::ElementsAreArray;

// The file from which this process has the library.
std::string libraryFile() {
  Dl_info info;
  auto* const symbol = reinterpret_cast<void*>(&Pbr::configFactory);
  return dladdr(symbol, &info) && info.dli_fname ? info.dli_fname : "";
}

// NUL-terminated, with any padding between.
std::vector<std::string> namesIn(std::string const& section) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < section.size();) {
    std::string const name = section.c_str() + at;
    if (!name.empty()) names.push_back(name);
    at += name.size() + 1;
  }
  return names;
}

TEST(TypeNameSection, HoldsTheTypesOfBothUnitsInTheOrderOfRegistration) {
  std::string const section = elfSection(libraryFile(), ".vyx.type");
  EXPECT_THAT(namesIn(section), ElementsAreArray(typesOfNamespace("Pbr::")));
}

TEST(TypeNameSection, EndsItsLastNameToo) {
  std::string const section = elfSection(libraryFile(), ".vyx.type");
  ASSERT_FALSE(section.empty());
  EXPECT_EQ('\0', section.back());
}

TEST(TypeNameSection, IsFoundByItsNameOnly) {
  EXPECT_THROW(elfSection(libraryFile(), ".vyx.typ"), std::runtime_error);
  EXPECT_THROW(elfSection(PBR_TESTS_DIR "/CMakeLists.txt", ".vyx.type"), std::runtime_error);
}

} // namespace
