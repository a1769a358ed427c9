// Reads the files of a unit and, through their imports, every other file that they need.

#pragma once

#include "Ast.h"
#include "Diagnostics.h"
#include "SourceFile.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vyxc {

struct LoadedFile {
  std::unique_ptr<SourceFile> source;
  ast::File ast;
  bool inUnit = false; // Named on the command line; nothing is generated for the others.
  std::vector<std::size_t> imports;
  std::vector<bool> sees; // By index: itself, and whatever it imports, directly or not.
};

class Loader {
public:
  Loader(std::vector<std::string> includeDirs, Diagnostics& diagnostics)
      : includeDirs_(std::move(includeDirs)), diagnostics_(diagnostics) {}

  // RETURNS the files in the order in which their reading began. The files at `paths` all see one another.
  std::vector<LoadedFile> load(std::vector<std::string> const& paths);

private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t loadFile(std::string const& path, Span importedAt, std::size_t depth);
  void loadImports(std::size_t index, std::size_t depth);
  bool readText(std::string const& path, Span importedAt, std::string& text);
  bool checkText(SourceFile const& source);
  std::string findImport(SourceFile const& importer, std::string const& path) const;
  void report(Span importedAt, std::string const& path, std::string const& why);
  void spreadVisibility();

  std::vector<std::string> includeDirs_;
  Diagnostics& diagnostics_;
  std::vector<LoadedFile> files_;
  std::vector<bool> loading_; // By index: its imports are being read, to import it now would be a cycle.
  std::map<std::string, std::size_t> byCanonicalPath_;
};

} // namespace vyxc
