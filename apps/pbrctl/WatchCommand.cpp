#include "pbrctl/Commands.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/Follower.h"
#include "pbrctl/Served.h"
#include "pbrctl/Signals.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {

namespace {

// ORDER: one line each, numbered from 1, flushed by the turn of the loop.
class EventPrinter final : public Follower::Listener {
public:
  EventPrinter(bool json, Io io) : json_(json), io_(io) {}

  void onBegin(std::string const& path) override { mark("begin", path); }
  void onEnd(std::string const& path) override { mark("end", path); }
  void onLost(std::string const& path) override { mark("lost", path); }
  void onTrouble(std::string const& words) override { io_.err << "pbrctl: note: " << words << std::endl; }

  void onChange(Change const& change) override {
    char const* const type = change.kind == Change::Kind::removed ? "delete" : "update";
    bool const hasValue = change.kind == Change::Kind::set;
    if (!json_) return line(type, change.path() + (hasValue ? " = " + change.value : ""));
    nlohmann::ordered_json event = begun(type, change.entity);
    event["attribute"] = change.attribute;
    if (change.key) event["key"] = *change.key;
    if (hasValue) event["value"] = change.value;
    write(event);
  }

private:
  void mark(char const* type, std::string const& path) {
    if (json_)
      write(begun(type, path));
    else
      line(type, path);
  }
  nlohmann::ordered_json begun(char const* type, std::string const& path) {
    return {{"seq", ++count_}, {"type", type}, {"path", path}};
  }
  void write(nlohmann::ordered_json const& event) {
    io_.out << event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
  }
  void line(std::string const& type, std::string const& text) {
    io_.out << type << std::string(8 - type.size(), ' ') << escaped(text) << '\n';
  }

  bool json_;
  Io io_;
  unsigned long long count_ = 0;
};

std::vector<Vyx::Name> pathsOf(std::string const& root) {
  if (ServedRoot const* const one = servedRoot(root)) return {Vyx::Name(one->path)};
  std::vector<Vyx::Name> paths;
  for (ServedRoot const& each : servedRoots()) paths.emplace_back(each.path);
  return paths;
}

} // namespace

int watchServer(WatchOptions const& options, Io io) {
  Vyx::NboAttrLog::Loop loop;
  EndSignals const signals(loop);
  EventPrinter printer(options.json, io);
  Follower follower(loop, options.remote, pathsOf(options.root), printer);
  follower.recordTo(options.recordFile);
  follower.start();
  bool isOver = false;
  if (options.time) loop.timerIn(*options.time, [&] { isOver = true; });
  while (!isOver && !signals.came() && !follower.hasFailed() && io.out) {
    loop.turn(kTurn);
    io.out.flush();
  }
  if (!follower.hasFailed()) return kDone;
  io.err << "pbrctl: error: " << follower.failure().text << '\n';
  return follower.failure().exitCode;
}

} // namespace Pbrctl
