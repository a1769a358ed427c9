#include "Loader.h"

#include "Parser.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace vyxc {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMaxBytes = std::size_t{64} << 20;
constexpr std::size_t kMaxDepth = 200;

} // namespace

std::vector<LoadedFile> Loader::load(std::vector<std::string> const& paths) {
  for (auto const& path : paths) {
    auto const index = loadFile(path, {}, 0);
    if (index != kNone) files_[index].inUnit = true;
  }
  spreadVisibility();
  return std::move(files_);
}

// RETURNS kNone if the file cannot be read; that is reported then.
std::size_t Loader::loadFile(std::string const& path, Span importedAt, std::size_t depth) {
  std::error_code ignored;
  auto canonical = fs::weakly_canonical(path, ignored).string();
  if (canonical.empty()) canonical = path;
  auto const known = byCanonicalPath_.find(canonical);
  if (known != byCanonicalPath_.end()) {
    if (known->second != kNone && loading_[known->second]) {
      diagnostics_.error(importedAt, "cyclic import: `" + path + "` is being read already");
    }
    return known->second;
  }
  byCanonicalPath_[canonical] = kNone;

  std::string text;
  if (!readText(path, importedAt, text)) return kNone;
  auto const index = files_.size();
  byCanonicalPath_[canonical] = index;
  files_.emplace_back();
  files_[index].source = std::make_unique<SourceFile>(path, std::move(text));
  loading_.push_back(true);
  if (checkText(*files_[index].source)) {
    files_[index].ast = Parser(*files_[index].source, diagnostics_).parse();
    loadImports(index, depth);
  }
  loading_[index] = false;
  return index;
}

void Loader::loadImports(std::size_t index, std::size_t depth) {
  auto const imports = files_[index].ast.imports; // A copy: `files_` grows.
  for (auto const& import : imports) {
    if (depth >= kMaxDepth) {
      diagnostics_.error(import.path.span, "imports are nested too deeply");
      return;
    }
    auto const path = findImport(*files_[index].source, import.path.text);
    if (path.empty()) {
      diagnostics_.error(import.path.span, "imported file `" + import.path.text + "` not found");
      continue;
    }
    auto const imported = loadFile(path, import.path.span, depth + 1);
    if (imported != kNone) files_[index].imports.push_back(imported);
  }
}

bool Loader::readText(std::string const& path, Span importedAt, std::string& text) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    report(importedAt, path, "is a directory");
    return false;
  }
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    report(importedAt, path, std::string("cannot be read: ") + std::strerror(errno ? errno : ENOENT));
    return false;
  }
  char buffer[1 << 16];
  while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
    text.append(buffer, static_cast<std::size_t>(in.gcount()));
    if (text.size() <= kMaxBytes) continue;
    report(importedAt, path, "is larger than 64 MiB");
    return false;
  }
  if (!in.bad()) return true;
  report(importedAt, path, "cannot be read to its end");
  return false;
}

bool Loader::checkText(SourceFile const& source) {
  auto refuse = [&](std::size_t at, char const* message) {
    auto const begin = static_cast<std::uint32_t>(at);
    diagnostics_.error({&source, begin, begin + 1}, message);
    return false;
  };
  auto const nul = source.text().find('\0');
  if (nul != std::string_view::npos) return refuse(nul, "NUL byte; this is no text");
  auto const wrong = firstInvalidUtf8(source.text());
  if (wrong != std::string_view::npos) return refuse(wrong, "not UTF-8 from here on");
  return true;
}

// As a quoted #include is: beside the importer first, then along the -I directories.
std::string Loader::findImport(SourceFile const& importer, std::string const& path) const {
  std::vector<fs::path> candidates;
  if (fs::path(path).is_absolute()) {
    candidates.emplace_back(path);
  } else {
    candidates.push_back(fs::path(importer.path()).parent_path() / path);
    for (auto const& dir : includeDirs_) candidates.push_back(fs::path(dir) / path);
  }
  std::error_code ignored;
  for (auto const& candidate : candidates) {
    if (fs::exists(candidate, ignored)) return candidate.string();
  }
  return {};
}

void Loader::report(Span importedAt, std::string const& path, std::string const& why) {
  if (importedAt.file) {
    diagnostics_.error(importedAt, "imported file `" + path + "` " + why);
  } else {
    diagnostics_.fileError(path, why);
  }
}

void Loader::spreadVisibility() {
  for (std::size_t start = 0; start < files_.size(); ++start) {
    auto& sees = files_[start].sees;
    sees.assign(files_.size(), false);
    std::vector<std::size_t> owed{start};
    if (files_[start].inUnit) {
      for (std::size_t i = 0; i < files_.size(); ++i) {
        if (files_[i].inUnit) owed.push_back(i);
      }
    }
    while (!owed.empty()) {
      auto const index = owed.back();
      owed.pop_back();
      if (sees[index]) continue;
      sees[index] = true;
      owed.insert(owed.end(), files_[index].imports.begin(), files_[index].imports.end());
    }
  }
}

} // namespace vyxc
