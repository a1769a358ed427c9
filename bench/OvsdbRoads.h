// The same changes by way of an OVSDB server, whose file lies in memory: transactions of a hundred changes to
// a client that monitors them, and all rows of a table to one that begins to.

#pragma once

#include "PlainTree.h"
#include "Road.h"
#include "ServerProcess.h"

#include <rapidjson/document.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <sys/un.h>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Bench {

class OvsdbServer {
public:
  OvsdbServer() {
    std::ofstream(folder_ / "schema") << R"({"name":"Bench","version":"1.0.0","tables":{"Entity":{"columns":{
      "value":{"type":"integer"},"second":{"type":"integer"},"third":{"type":"integer"}}}}})";
    std::string const create =
        "ovsdb-tool create " + file() + " " + (folder_ / "schema") + " >/dev/null 2>&1";
    require(std::system(create.c_str()) == 0, "ovsdb-tool");
    process_.emplace("/usr/sbin/ovsdb-server",
                     std::vector<std::string>{"ovsdb-server", file(), "--remote=punix:" + socket(),
                                              "--unixctl=" + (folder_ / "control"), "--no-chdir"});
  }

  std::string socket() const { return folder_ / "socket"; }

private:
  std::string file() const { return folder_ / "db"; }

  ScratchFolder folder_{"/dev/shm"};
  std::optional<ServerProcess> process_;
};

// JSON values one behind the other, without anything between them.
class JsonStream {
public:
  explicit JsonStream(std::string const& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    waitUntil([&] {
      socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
      if (::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return true;
      ::close(socket_);
      return false;
    });
  }
  ~JsonStream() { ::close(socket_); }
  JsonStream(JsonStream const&) = delete;
  JsonStream& operator=(JsonStream const&) = delete;

  void send(std::string const& text) { sendAll(socket_, text.data(), text.size()); }
  // The next message that isn't the server asking whether this one is still there. Good until the next call.
  rapidjson::Document& next() {
    for (;;) {
      nextText();
      message_.Parse(text_.data(), text_.size());
      require(!message_.HasParseError(), "no JSON");
      bool const isProbe = message_.HasMember("method") && message_["method"] == "echo";
      if (!isProbe) return message_;
      send(R"({"id":"echo","result":[],"error":null})");
    }
  }

private:
  // One object, told by its braces.
  void nextText() {
    text_.clear();
    for (bool isWhole = false; !isWhole;) {
      if (at_ == there_) {
        at_ = 0;
        there_ = receive(socket_, room_.data(), room_.size());
      }
      std::size_t const from = at_;
      while (at_ < there_ && !endsWith(room_[at_])) ++at_;
      isWhole = at_ < there_;
      if (isWhole) ++at_;
      text_.append(room_.data() + from, at_ - from);
    }
  }
  // Whether that character is the last one of an object.
  bool endsWith(char c) {
    bool const isEscaped = std::exchange(isEscaping_, isWithin_ && c == '\\' && !isEscaping_);
    if (c == '"' && !isEscaped) isWithin_ = !isWithin_;
    if (isWithin_ || (c != '{' && c != '}')) return false;
    depth_ += c == '{' ? 1 : -1;
    return depth_ == 0;
  }

  int socket_ = -1;
  std::vector<char> room_ = std::vector<char>(256 * 1024);
  std::size_t at_ = 0;
  std::size_t there_ = 0;
  int depth_ = 0;
  bool isWithin_ = false;   // A string.
  bool isEscaping_ = false; // The character before says so.
  std::string text_;
  rapidjson::Document message_;
};

class OvsdbRoad : public Road {
protected:
  static constexpr std::size_t kInserts = 1000; // In a transaction.

  // RETURNS the names that the server has given to the new rows.
  std::vector<std::string> insert(std::size_t rows) {
    JsonStream stream(server_.socket());
    std::vector<std::string> names;
    while (names.size() < rows) {
      std::string text = kTransact;
      for (std::size_t i = 0; i < kInserts; ++i)
        text += R"(,{"op":"insert","table":"Entity","row":{"value":0,"second":)" + std::to_string(i) + "}}";
      stream.send(text + kEnd);
      for (auto const& result : stream.next()["result"].GetArray())
        names.push_back(result["uuid"][1].GetString());
    }
    return names;
  }
  // Asks for everything, now and from now on. RETURNS all rows.
  rapidjson::Value& monitor(JsonStream& stream, char const* columns) {
    stream.send(std::string(R"({"method":"monitor","params":["Bench",null,{"Entity":{"columns":)") + columns +
                "}}],\"id\":0}");
    return stream.next()["result"]["Entity"];
  }

  static constexpr char kTransact[] = R"({"method":"transact","params":["Bench")";
  static constexpr char kEnd[] = R"(],"id":1})";

  OvsdbServer server_;
};

// Applied.
class OvsdbChangesRoad final : public OvsdbRoad {
public:
  OvsdbChangesRoad() : names_(insert(kEntities)) {}

  void openReader() override {
    tree_.fill();
    stream_ = std::make_unique<JsonStream>(server_.socket());
    for (std::size_t i = 0; i < kEntities; ++i) entities_[names_[i]] = tree_.find(i);
    monitor(*stream_, R"(["value"])");
  }
  void openWriter() override { stream_ = std::make_unique<JsonStream>(server_.socket()); }
  void write(std::size_t changes) override {
    std::size_t waiting = 0;
    for (std::size_t i = 0; i < changes;) {
      std::string text = kTransact;
      for (std::size_t const end = std::min(changes, i + kUpdates); i < end; ++i)
        text += R"(,{"op":"update","table":"Entity","where":[["_uuid","==",["uuid",")" +
                names_[i % kEntities] + R"("]]],"row":{"value":)" + std::to_string(i + 1) + "}}";
      stream_->send(text + kEnd);
      if (++waiting == kOnTheirWay) stream_->next(), --waiting;
    }
    for (; waiting > 0; --waiting) stream_->next();
  }
  // To the last one: the server may leave out a value that another one has followed.
  void read(std::size_t changes) override {
    PlainEntity const* const last = tree_.find((changes - 1) % kEntities);
    while (last->values[0] != changes)
      for (auto const& row : stream_->next()["params"][1]["Entity"].GetObject())
        entities_.find(row.name.GetString())->second->valueIs(0, row.value["new"]["value"].GetUint64());
  }

private:
  static constexpr std::size_t kUpdates = 100; // In a transaction.
  static constexpr std::size_t kOnTheirWay = 4;

  std::vector<std::string> names_;
  PlainTree tree_;
  std::unordered_map<std::string, PlainEntity*> entities_;
  std::unique_ptr<JsonStream> stream_;
};

// Rows of three numbers to a client that makes an entity for each.
class OvsdbMonitorRoad final : public OvsdbRoad {
public:
  OvsdbMonitorRoad() { insert(kRows); }

  void write(std::size_t) override {}
  void read(std::size_t rows) override {
    JsonStream stream(server_.socket());
    PlainTree tree;
    std::unordered_map<std::string, PlainEntity*> entities;
    for (auto const& row : monitor(stream, R"(["value","second","third"])").GetObject()) {
      PlainEntity* const entity = entities[row.name.GetString()] = tree.add(entities.size());
      unsigned attribute = 0;
      for (auto const& value : row.value["new"].GetObject())
        entity->valueIs(attribute++, value.value.GetUint64());
    }
    require(entities.size() == rows, "rows are missing");
  }

  static constexpr std::size_t kRows = 100000;
};

} // namespace Bench
