#include "pbrctl/Tree.h"

#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/NativeWriter.h"
#include "pbrctl/TreeBuilder.h"
#include "pbrctl/TreeReader.h"

namespace Pbrctl {

namespace {

std::optional<LoadedTree> read(std::string const& file, Diagnostics& diagnostics) {
  auto const source = SourceText::read(file, diagnostics);
  if (!source) return std::nullopt;
  ConfigAst const content = readConfig(*source, diagnostics);
  if (!diagnostics.ok()) return std::nullopt;
  LoadedTree loaded{buildTree(content, diagnostics), source->isJson() ? Form::json : Form::text};
  return loaded.config ? std::optional(loaded) : std::nullopt;
}

} // namespace

std::optional<LoadedTree> loadTree(std::string const& file, Io io) {
  Diagnostics diagnostics(file);
  auto loaded = read(file, diagnostics);
  diagnostics.print(io.err);
  return loaded;
}

std::optional<ConfigAst> contentOf(Pbr::Config const& config, Io io) {
  std::vector<std::string> problems;
  ConfigAst content = readTree(config, problems);
  for (std::string const& problem : problems) io.err << "pbrctl: error: " << problem << '\n';
  return problems.empty() ? std::optional(std::move(content)) : std::nullopt;
}

std::optional<ConfigAst> loadContent(std::string const& file, Io io) {
  auto const loaded = loadTree(file, io);
  return loaded ? contentOf(*loaded->config, io) : std::nullopt;
}

void writeContent(ConfigAst const& content, Form form, Io io) {
  if (form == Form::json)
    writeJson(content, io.out);
  else
    writeNative(content, io.out);
}

} // namespace Pbrctl
