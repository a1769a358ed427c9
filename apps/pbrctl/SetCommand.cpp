#include "pbrctl/Commands.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/PathAccess.h"
#include "pbrctl/RootFile.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

// RETURNS whether it was taken.
bool changed(Vyx::Ptr<Vyx::Entity> const& root, std::string const& path, std::string const& value, Io io) {
  try {
    PathAccess(root).set(path, value);
    return true;
  } catch (PathError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return false;
  }
}

int setInConfig(std::string const& file, std::string const& path, std::string const& value, Io io) {
  auto const loaded = loadTree(file, io);
  if (!loaded || !changed(loaded->config, path, value, io)) return kRefused;
  auto const result = contentOf(*loaded->config, io);
  if (!result) return kRefused;
  writeContent(*result, loaded->form, io);
  return kDone;
}

} // namespace

int setValue(TreeFile const& file, std::string const& path, std::string const& value, Io io) {
  if (isConfig(file)) return setInConfig(file.file, path, value, io);
  auto const root = loadRoot(file, io);
  if (!root || !changed(root, path, value, io)) return kRefused;
  auto const document = documentOf(*root, io);
  if (!document) return kRefused;
  writeDocument(*document, io.out);
  return kDone;
}

} // namespace Pbrctl
