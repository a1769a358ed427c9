#include "pbrctl/RootFile.h"

#include "pbrctl/EntityJson.h"
#include "pbrctl/EntityReader.h"
#include "pbrctl/EntityTable.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/Served.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

Vyx::Ptr<Vyx::Entity> loadRoot(TreeFile const& file, Io io) {
  if (isConfig(file)) {
    auto const loaded = loadTree(file.file, io);
    return loaded ? loaded->config : nullptr;
  }
  Diagnostics diagnostics(file.file);
  Vyx::Ptr<Vyx::Entity> root;
  if (auto const source = SourceText::read(file.file, diagnostics))
    root = readEntityDocument(*source, *servedRoot(file.as)->type(), diagnostics);
  diagnostics.print(io.err);
  return root;
}

std::optional<nlohmann::json> documentOf(Vyx::Entity const& root, Io io) {
  try {
    return entityDocument(root);
  } catch (Vyx::Exception const& e) {
    io.err << "pbrctl: error: " << e.what() << '\n';
    return std::nullopt;
  }
}

int showRoot(Vyx::Entity const& root, bool json, Io io) {
  if (auto const* const config = dynamic_cast<Pbr::Config const*>(&root)) {
    auto const content = contentOf(*config, io);
    if (!content) return kRefused;
    writeContent(*content, json ? Form::json : Form::text, io);
    return kDone;
  }
  auto const document = documentOf(root, io);
  if (!document) return kRefused;
  if (json)
    writeDocument(*document, io.out);
  else
    printEntityTable(*document, io.out);
  return kDone;
}

} // namespace Pbrctl
