#include "pbrctl/CommandLine.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "pbrctl/Commands.h"
#include "pbrctl/Served.h"

#include <CLI/CLI.hpp>
#include <functional>

namespace Pbrctl {

namespace {

constexpr char const* kVersion = "pbrctl 0.1.0";

// What the verbs' options are read into.
struct Arguments {
  std::vector<std::string> files;
  std::string file;
  std::string second;
  std::string path;
  std::string value;
  std::string form;
  std::string as = "config";
  std::string socket;
  std::string config;
  std::string record;
  double timeout = 10;
  double time = 0; // 0 for as long as nobody ends it.
  bool allowOtherHosts = false;
  bool json = false;
  bool trace = false;
  std::function<int()> run;

  TreeFile treeFile() const { return {file, as}; }
  Remote remote() const { return {Vyx::NboAttrLog::addressFromText(socket), seconds(timeout)}; }

  static Vyx::NboAttrLog::Duration seconds(double number) {
    return std::chrono::duration_cast<Vyx::NboAttrLog::Duration>(std::chrono::duration<double>(number));
  }
};

constexpr double kLongest = 1e6; // Of what is given in seconds.

CLI::App& verb(CLI::App& app, Arguments& a, char const* name, char const* about, std::function<int()> run) {
  CLI::App& sub = *app.add_subcommand(name, about);
  sub.callback([&a, run = std::move(run)] { a.run = run; });
  return sub;
}

void addFile(CLI::App& sub, std::string& into, char const* name, char const* about) {
  sub.add_option(name, into, about)->required();
}

void addJson(CLI::App& sub, Arguments& a) { sub.add_flag("-j,--json", a.json, "Write JSON"); }

void addAs(CLI::App& sub, Arguments& a) {
  sub.add_option("--as", a.as, "What the file holds; a status and a checkpoint are JSON")
      ->check(CLI::IsMember({"config", "status", "checkpoint"}))
      ->capture_default_str();
}

std::string addressProblem(std::string const& text) {
  try {
    Vyx::NboAttrLog::addressFromText(text);
    return {};
  } catch (Vyx::NboAttrLog::ConnectionException const& e) {
    return e.what();
  }
}

CLI::Option& addSocket(CLI::App& sub, Arguments& a) {
  return *sub.add_option("--socket", a.socket, "Where the server is: a path or tcp:HOST:PORT")
              ->check(CLI::Validator(addressProblem, "ADDRESS"));
}

void addTimeout(CLI::App& sub, Arguments& a) {
  sub.add_option("--timeout", a.timeout, "How many seconds to wait for the server")
      ->check(CLI::Range(0.001, kLongest))
      ->capture_default_str();
}

std::string rootProblem(std::string const& text) {
  return servedRoot(text) ? "" : "a server holds config, status and checkpoint, and no '" + text + "'";
}

int show(Arguments const& a, Io io) {
  if (a.socket.empty()) return showFile(a.treeFile(), a.json, io);
  std::string const problem = rootProblem(a.file);
  if (problem.empty()) return showServed(a.file, a.remote(), a.json, io);
  io.err << "pbrctl: error: " << problem << '\n';
  return kUsage;
}

void addReadingVerbs(CLI::App& app, Arguments& a, Io io) {
  CLI::App& check =
      verb(app, a, "check", "Say whether files are right", [&a, io] { return checkFiles(a.files, io); });
  check.add_option("FILE", a.files, "Files to read")->required();

  CLI::App& shown = verb(app, a, "show", "Show what a file says, sorted, or what a server holds",
                         [&a, io] { return show(a, io); });
  addFile(shown, a.file, "FILE", "File to read; with --socket: config, status or checkpoint");
  addAs(shown, a);
  addSocket(shown, a);
  addTimeout(shown, a);
  addJson(shown, a);

  CLI::App& convert = verb(app, a, "convert", "Write a file in another form",
                           [&a, io] { return convertFile(a.file, a.form, io); });
  addFile(convert, a.file, "FILE", "File to read");
  convert.add_option("--to", a.form, "The form to write")
      ->required()
      ->check(CLI::IsMember({"text", "json", "pbr-map"}));

  CLI::App& diff = verb(app, a, "diff", "Show what differs between two files",
                        [&a, io] { return diffFiles(a.treeFile(), a.second, a.json, io); });
  addFile(diff, a.file, "A", "File to compare");
  addFile(diff, a.second, "B", "File to compare it with");
  addAs(diff, a);
  addJson(diff, a);
}

void addCopy(CLI::App& app, Arguments& a, Io io) {
  CLI::App& copy =
      verb(app, a, "copy", "Copy one configuration onto another and show what that does", [&a, io] {
        return copyFile({a.file, a.second, a.trace, a.json}, io);
      });
  addFile(copy, a.file, "SRC", "File to copy from");
  addFile(copy, a.second, "DST", "File to copy onto; it is not written");
  copy.add_flag("--trace", a.trace, "Trace the copy to the standard error stream");
  addJson(copy, a);
}

void addReflectionVerbs(CLI::App& app, Arguments& a, Io io) {
  CLI::App& types = verb(app, a, "types", "Show the types of the model, or one with its attributes",
                         [&a, io] { return showTypes(a.value, a.json, io); });
  types.add_option("TYPE", a.value, "Name of a type");
  addJson(types, a);

  CLI::App& get = verb(app, a, "get", "Show one attribute of a file's tree",
                       [&a, io] { return getValue(a.treeFile(), a.path, io); });
  addFile(get, a.file, "FILE", "File to read");
  addFile(get, a.path, "PATH",
          "Path of the attribute, such as pmapType.pmap[WAN].currentSubConfig; . is the root");
  addAs(get, a);

  CLI::App& set = verb(app, a, "set", "Show a file as it is with one attribute changed",
                       [&a, io] { return setValue(a.treeFile(), a.path, a.value, io); });
  addFile(set, a.file, "FILE", "File to read; it is not written");
  addFile(set, a.path, "PATH", "Path of the attribute");
  addFile(set, a.value, "VALUE", "The new value");
  addAs(set, a);
}

void addServe(CLI::App& app, Arguments& a, Io io) {
  CLI::App& serving = verb(app, a, "serve", "Hold a configuration for other processes", [&a, io] {
    return serve({Vyx::NboAttrLog::addressFromText(a.socket), a.config, a.allowOtherHosts}, io);
  });
  addSocket(serving, a).required();
  serving.add_option("--config", a.config, "File with the configuration to begin with");
  serving.add_flag("--allow-other-hosts", a.allowOtherHosts,
                   "Accept a TCP address that other hosts can reach; they may read");
}

void addRemoteVerbs(CLI::App& app, Arguments& a, Io io) {
  CLI::App& load = verb(app, a, "load", "Copy a file's configuration onto the one that a server holds",
                        [&a, io] { return loadFile(a.file, a.remote(), a.json, io); });
  addFile(load, a.file, "FILE", "File to read");
  addSocket(load, a).required();
  addTimeout(load, a);
  addJson(load, a);

  CLI::App& watch = verb(app, a, "watch", "Show every change of what a server holds", [&a, io] {
    WatchOptions options{a.remote(), a.path, a.json, a.record, {}};
    if (a.time > 0) options.time = Arguments::seconds(a.time);
    return watchServer(options, io);
  });
  watch.add_option("PATH", a.path, "config, status or checkpoint; all of them if nothing is said")
      ->check(CLI::Validator(rootProblem, "ROOT"));
  addSocket(watch, a).required();
  addTimeout(watch, a);
  watch.add_option("--record", a.record, "File to keep what the server sends");
  watch.add_option("--for", a.time, "How many seconds to watch; until SIGINT or SIGTERM if nothing is said")
      ->check(CLI::Range(0.001, kLongest));
  addJson(watch, a);
}

void addLog(CLI::App& app, Arguments& a, Io io) {
  CLI::App& log = *app.add_subcommand("log", "Look at recorded connections");
  log.require_subcommand(1);
  CLI::App& dump =
      verb(log, a, "dump", "Show a recording, a field a line", [&a, io] { return dumpLog(a.file, io); });
  addFile(dump, a.file, "FILE", "Recording to read");
}

} // namespace

int runCommandLine(int argc, char const* const* argv, Io io) {
  CLI::App app("Configuration of policy-based routing: read, compare, copy.", "pbrctl");
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 done, 1 refused, 2 usage, 3 the server cannot be reached.");
  Arguments arguments;
  addReadingVerbs(app, arguments, io);
  addCopy(app, arguments, io);
  addReflectionVerbs(app, arguments, io);
  addServe(app, arguments, io);
  addRemoteVerbs(app, arguments, io);
  addLog(app, arguments, io);
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& e) {
    return app.exit(e, io.out, io.err) == 0 ? kDone : kUsage;
  }
  return arguments.run();
}

} // namespace Pbrctl
