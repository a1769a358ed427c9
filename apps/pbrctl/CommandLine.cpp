#include "pbrctl/CommandLine.h"

#include "pbrctl/Commands.h"

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
  bool json = false;
  bool trace = false;
  std::function<int()> run;
};

CLI::App& verb(CLI::App& app, Arguments& a, char const* name, char const* about, std::function<int()> run) {
  CLI::App& sub = *app.add_subcommand(name, about);
  sub.callback([&a, run = std::move(run)] { a.run = run; });
  return sub;
}

void addFile(CLI::App& sub, std::string& into, char const* name, char const* about) {
  sub.add_option(name, into, about)->required();
}

void addJson(CLI::App& sub, Arguments& a) { sub.add_flag("-j,--json", a.json, "Write JSON"); }

void addReadingVerbs(CLI::App& app, Arguments& a, Io io) {
  CLI::App& check =
      verb(app, a, "check", "Say whether files are right", [&a, io] { return checkFiles(a.files, io); });
  check.add_option("FILE", a.files, "Files to read")->required();

  CLI::App& show = verb(app, a, "show", "Show what a file says, sorted",
                        [&a, io] { return showFile(a.file, a.json, io); });
  addFile(show, a.file, "FILE", "File to read");
  addJson(show, a);

  CLI::App& convert = verb(app, a, "convert", "Write a file in another form",
                           [&a, io] { return convertFile(a.file, a.form, io); });
  addFile(convert, a.file, "FILE", "File to read");
  convert.add_option("--to", a.form, "The form to write")
      ->required()
      ->check(CLI::IsMember({"text", "json", "pbr-map"}));

  CLI::App& diff = verb(app, a, "diff", "Show what differs between two files",
                        [&a, io] { return diffFiles(a.file, a.second, a.json, io); });
  addFile(diff, a.file, "A", "File to compare");
  addFile(diff, a.second, "B", "File to compare it with");
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
                       [&a, io] { return getValue(a.file, a.path, io); });
  addFile(get, a.file, "FILE", "File to read");
  addFile(get, a.path, "PATH",
          "Path of the attribute, such as pmapType.pmap[WAN].currentSubConfig; . is the root");

  CLI::App& set = verb(app, a, "set", "Show a file as it is with one attribute changed",
                       [&a, io] { return setValue(a.file, a.path, a.value, io); });
  addFile(set, a.file, "FILE", "File to read; it is not written");
  addFile(set, a.path, "PATH", "Path of the attribute");
  addFile(set, a.value, "VALUE", "The new value");
}

} // namespace

int runCommandLine(int argc, char const* const* argv, Io io) {
  CLI::App app("Configuration of policy-based routing: read, compare, copy.", "pbrctl");
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 done, 1 refused, 2 usage.");
  Arguments arguments;
  addReadingVerbs(app, arguments, io);
  addCopy(app, arguments, io);
  addReflectionVerbs(app, arguments, io);
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& e) {
    return app.exit(e, io.out, io.err) == 0 ? kDone : kUsage;
  }
  return arguments.run();
}

} // namespace Pbrctl
