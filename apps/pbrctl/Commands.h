// The verbs of the tool. Each answers with the exit code; nothing is written to `io.out` for input that is
// refused.

#pragma once

#include "pbrctl/Io.h"
#include "pbrctl/Remote.h"

#include <optional>
#include <string>
#include <vector>

namespace Pbrctl {

// A file, and as which tree it is read: "config", "status" or "checkpoint".
struct TreeFile {
  std::string file;
  std::string as = "config";
};

// Reads each file and says which are right.
int checkFiles(std::vector<std::string> const& files, Io io);
int showFile(TreeFile const& file, bool json, Io io);
// `root` is the word or the path of a served root.
int showServed(std::string const& root, Remote const& remote, bool json, Io io);
// `form` is "text", "json" or "pbr-map".
int convertFile(std::string const& file, std::string const& form, Io io);
int diffFiles(TreeFile const& first, std::string const& second, bool json, Io io);

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
int getValue(TreeFile const& file, std::string const& path, Io io);
// Writes the resulting tree in the file's own form; the file stays as it is.
int setValue(TreeFile const& file, std::string const& path, std::string const& value, Io io);

struct ServeOptions {
  Vyx::NboAttrLog::Address address;
  std::string configFile; // Empty for a configuration as it is built.
  bool mayServeOtherHosts = false;
};
// Returns at SIGTERM or SIGINT.
int serve(ServeOptions const& options, Io io);
// Copies the file's configuration onto the one that is served.
int loadFile(std::string const& file, Remote const& remote, bool json, Io io);

struct WatchOptions {
  Remote remote;
  std::string root; // Word or path; empty for all.
  bool json = false;
  std::string recordFile; // Empty for none.
  std::optional<Vyx::NboAttrLog::Duration> time;
};
// Returns after the time, at SIGTERM or SIGINT.
int watchServer(WatchOptions const& options, Io io);

// Shows a recording of one direction of a connection, a field a line. Of a broken one, what stands before the
// break is shown.
int dumpLog(std::string const& file, Io io);

} // namespace Pbrctl
