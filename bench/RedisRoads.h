// The same changes by way of a Redis server, which keeps nothing on disk: as a stream, and as the first
// synchronisation of a replica.

#pragma once

#include "PlainTree.h"
#include "Road.h"
#include "ServerProcess.h"

#include <hiredis/hiredis.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

namespace Bench {

class RedisServer {
public:
  // Listens on a Unix-domain socket, and on that port of the loopback unless it is 0.
  explicit RedisServer(unsigned port = 0)
      // The package of the tools has the server as well, under this name; that of the server starts it as a
      // service.
      : process_("/usr/bin/redis-check-rdb",
                 {"redis-server", "--port", std::to_string(port), "--bind", "127.0.0.1", "--unixsocket",
                  socket(), "--dir", folder_.path(), "--save", "", "--appendonly", "no",
                  "--enable-debug-command", "local", "--repl-diskless-sync", "yes",
                  "--repl-diskless-sync-delay", "0"}) {}

  std::string socket() const { return folder_ / "redis"; }

private:
  ScratchFolder folder_;
  ServerProcess process_;
};

using Reply = std::unique_ptr<redisReply, void (*)(void*)>;

class RedisClient {
public:
  explicit RedisClient(std::string const& socket) {
    waitUntil([&] {
      context_.reset(redisConnectUnix(socket.c_str()));
      return context_ && context_->err == 0;
    });
  }

  Reply ask(char const* command) {
    append(command);
    return reply();
  }
  // Goes out with the next reply that is waited for.
  template <class... Values> void append(char const* format, Values... values) {
    require(redisAppendCommand(context_.get(), format, values...) == REDIS_OK, "redisAppendCommand");
  }
  Reply reply() {
    void* got = nullptr;
    require(redisGetReply(context_.get(), &got) == REDIS_OK, "redisGetReply");
    Reply reply(static_cast<redisReply*>(got), &freeReplyObject);
    if (reply->type == REDIS_REPLY_ERROR) throw std::runtime_error(reply->str);
    return reply;
  }

private:
  struct Free {
    void operator()(redisContext* context) const { redisFree(context); }
  };
  std::unique_ptr<redisContext, Free> context_;
};

// A stream, written a thousand entries at a time, applied.
class RedisStreamRoad final : public Road {
public:
  void openReader() override { tree_.fill(); }
  void write(std::size_t changes) override {
    RedisClient client(server_.socket());
    for (std::size_t i = 0; i < changes;) {
      std::size_t const end = std::min<std::size_t>(changes, i + kBatch);
      std::size_t const count = end - i;
      for (; i < end; ++i)
        client.append("XADD changes * %lu %lu", static_cast<unsigned long>(i % kEntities), i + 1UL);
      for (std::size_t k = 0; k < count; ++k) client.reply();
    }
  }
  void read(std::size_t changes) override {
    RedisClient client(server_.socket());
    std::string last = "0";
    while (tree_.heard() < changes) {
      client.append("XREAD COUNT %lu BLOCK 0 STREAMS changes %s", kBatch, last.c_str());
      Reply const reply = client.reply();
      redisReply const& entries = *reply->element[0]->element[1];
      for (std::size_t i = 0; i < entries.elements; ++i) apply(*entries.element[i]->element[1]);
      last = entries.element[entries.elements - 1]->element[0]->str;
    }
  }

private:
  static constexpr unsigned long kBatch = 1000;

  void apply(redisReply const& pair) {
    tree_.find(std::strtoull(pair.element[0]->str, nullptr, 10))
        ->valueIs(0, std::strtoull(pair.element[1]->str, nullptr, 10));
  }

  RedisServer server_;
  PlainTree tree_;
};

// Keys with values of 32 bytes to an empty replica.
class RedisReplicaRoad final : public Road {
public:
  void openWriter() override {
    RedisClient client(master_.socket());
    client.append("DEBUG POPULATE %d key 32", kKeys);
    client.reply();
  }
  void write(std::size_t) override {}
  void read(std::size_t keys) override {
    RedisClient client(replica_.socket());
    client.append("REPLICAOF 127.0.0.1 %u", port_);
    client.reply();
    waitUntil([&] {
      bool const isUp =
          std::string(client.ask("INFO replication")->str).find("master_link_status:up") != std::string::npos;
      return isUp && static_cast<std::size_t>(client.ask("DBSIZE")->integer) == keys;
    });
  }

  static constexpr int kKeys = 1000000;

private:
  unsigned const port_ = freePort();
  RedisServer master_{port_};
  RedisServer replica_;
};

} // namespace Bench
