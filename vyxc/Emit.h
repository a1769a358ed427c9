// From the model to the texts of the generated files.

#pragma once

#include "CodeWriter.h"
#include "CppTypes.h"
#include "Model.h"

#include <set>
#include <string>
#include <vector>

namespace vyxc {

struct OutputFile {
  std::string path; // Relative to the output folder.
  std::string text;
};

// ORDER: the umbrella header, the unit's source, then the files of each type in the order of registration.
std::vector<OutputFile> emit(Model const& model);

// What each kind of output needs from the others.

// The line that says whence the file comes.
void emitHead(CodeWriter& out, std::string const& schema);
// A source names its own header first; `main` is empty for a header.
void emitIncludes(CodeWriter& out, std::string const& main, std::set<std::string> headers);
void emitUnitDeclaration(CodeWriter& out, Model const& model);
// Arrays and the tuple of a constructor's or function's parameters.
void emitNames(CodeWriter& out, std::string const& array, std::vector<std::string> const& names);
std::vector<std::string> schemaTypes(std::vector<Parameter> const& parameters);

std::string enumHeader(Model const& model, EnumType const& type);
std::string enumSource(Model const& model, EnumType const& type);
std::string valueSource(Model const& model, ValueType const& type);
std::string entityHeader(Model const& model, EntityType const& type);
std::string entitySource(Model const& model, EntityType const& type);
std::string adapterHeader(Model const& model, EntityType const& type);
std::string adapterSource(Model const& model, EntityType const& type);
std::string unitHeader(Model const& model);
std::string unitSource(Model const& model);

} // namespace vyxc
