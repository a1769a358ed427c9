// The verbs of the tool. Each answers with the exit code; nothing is written to `io.out` for input that is
// refused.

#pragma once

#include "pbrctl/Io.h"

#include <string>
#include <vector>

namespace Pbrctl {

// Reads each file and says which are right.
int checkFiles(std::vector<std::string> const& files, Io io);
int showFile(std::string const& file, bool json, Io io);
// `form` is "text", "json" or "pbr-map".
int convertFile(std::string const& file, std::string const& form, Io io);
int diffFiles(std::string const& first, std::string const& second, bool json, Io io);

struct CopyOptions {
  std::string source;
  std::string destination;
  bool trace = false;
  bool json = false;
};
// Copies the first tree onto the second in memory; no file is written.
int copyFile(CopyOptions const& options, Io io);

// All types, or the one of that name.
int showTypes(std::string const& type, bool json, Io io);
int getValue(std::string const& file, std::string const& path, Io io);
// Writes the resulting configuration in the file's own form; the file stays as it is.
int setValue(std::string const& file, std::string const& path, std::string const& value, Io io);

} // namespace Pbrctl
