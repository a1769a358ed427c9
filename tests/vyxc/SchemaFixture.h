// Schemas as texts in a folder of their own, compiled as if they had been named on the command line.

#pragma once

#include "vyxc/Compilation.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vyxc {

inline std::string readFile(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline std::string printed(Diagnostics const& diagnostics) {
  std::ostringstream out;
  diagnostics.print(out);
  return out.str();
}

class SchemaFixture : public testing::Test {
protected:
  SchemaFixture() {
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(testing::TempDir()) /
              (std::string("vyxc-") + info->test_suite_name() + "-" + info->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~SchemaFixture() override { std::filesystem::remove_all(folder_); }

  std::string write(std::string const& name, std::string const& text) {
    auto const path = folder_ / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  void compileFiles(std::vector<std::string> const& paths) {
    compilation_ = std::make_unique<Compilation>(std::vector<std::string>{}, paths);
  }

  // One file of a namespace N; its unit lists `types`.
  void compile(std::string const& types, std::string const& body) {
    compileFiles({write("main.vyx", "namespace N\nunit U header \"N/U.h\" { " + types + " }\n" + body)});
  }

  std::string errors() const { return printed(compilation_->diagnostics()); }
  Model const& model() const { return compilation_->model(); }

  template <class T = EntityType> T const& type(std::string const& name) const {
    for (auto const* candidate : model().unit.types) {
      if (candidate->name == name) return dynamic_cast<T const&>(*candidate);
    }
    throw std::runtime_error("no type " + name + "\n" + errors());
  }
  Attribute const& attribute(std::string const& typeName, std::string const& name) const {
    auto const* found = type(typeName).own(name);
    return found ? *found : throw std::runtime_error("no attribute " + name);
  }

  std::filesystem::path folder_;
  std::unique_ptr<Compilation> compilation_;
};

} // namespace vyxc
