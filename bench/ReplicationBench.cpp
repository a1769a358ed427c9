// Changes of single attributes on their way from one process to another over a Unix-domain socket: a run of
// many, one there and back, and all of a tree to a reader that has nothing yet.
//
// Each road of the first kind brings `kEntities` entities' values of 64 bits, changed in the order of their
// ids. Where it says "applied", the reader looks the entity up, stores the value and calls one virtual
// reactor.

#include "Followers.h"
#include "OvsdbRoads.h"
#include "PlainTree.h"
#include "Processor.h"
#include "RedisRoads.h"
#include "TreeRoads.h"
#include "TwoProcesses.h"

#include "Vyx/NboAttrLog/Frame.h"

#include "wire.pb.h"

#include <benchmark/benchmark.h>
#include <google/protobuf/io/coded_stream.h>
#include <zmq.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace Bench {

namespace {

constexpr std::size_t kChunk = 64 * 1024;
// One change of 64 bits on the attribute log.
constexpr std::size_t kChangeBytes = Vyx::NboAttrLog::kFrameBytes + 8;

// Bytes, and nothing done with them.
class RawRoad final : public SocketRoad {
public:
  void write(std::size_t changes) override {
    std::vector<char> const chunk(kChunk);
    for (std::size_t left = changes * kChangeBytes; left > 0;) {
      std::size_t const size = std::min(left, chunk.size());
      sendAll(writerEnd(), chunk.data(), size);
      left -= size;
    }
  }
  void read(std::size_t changes) override {
    std::vector<char> chunk(kChunk);
    for (std::size_t left = changes * kChangeBytes; left > 0;)
      left -= receive(readerEnd(), chunk.data(), std::min(left, chunk.size()));
  }
};

// Messages of as many bytes, and nothing done with them.
class ZeroMqRoad final : public Road {
public:
  // A first message goes over, so that both are connected when the clock starts.
  void openReader() override {
    openSocket(ZMQ_PULL);
    require(zmq_bind(socket_, address().c_str()) == 0, "zmq_bind");
    readOne();
  }
  void openWriter() override {
    openSocket(ZMQ_PUSH);
    require(zmq_connect(socket_, address().c_str()) == 0, "zmq_connect");
    writeOne();
  }
  void write(std::size_t changes) override {
    for (std::size_t i = 0; i < changes; ++i) writeOne();
  }
  void read(std::size_t changes) override {
    for (std::size_t i = 0; i < changes; ++i) readOne();
  }

private:
  std::string address() const { return "ipc://" + (folder_ / "socket"); }
  void openSocket(int kind) {
    context_ = zmq_ctx_new();
    socket_ = zmq_socket(context_, kind);
    require(socket_, "zmq_socket");
  }
  void writeOne() { require(zmq_send(socket_, bytes_.data(), bytes_.size(), 0) >= 0, "zmq_send"); }
  void readOne() {
    auto const count = zmq_recv(socket_, bytes_.data(), bytes_.size(), 0);
    require(count == static_cast<int>(bytes_.size()), "zmq_recv");
  }

  ScratchFolder folder_;
  void* context_ = nullptr;
  void* socket_ = nullptr;
  std::array<char, kChangeBytes> bytes_{};
};

// Messages of protobuf, each behind its length, applied.
class ProtobufRoad : public SocketRoad {
public:
  void write(std::size_t changes) override {
    for (std::size_t i = 0; i < changes; ++i) writeOne(i % kEntities, 0, i + 1);
    flush();
  }
  void openReader() override { tree_.fill(); }
  void read(std::size_t changes) override {
    readAll(changes, [this](std::uint64_t entity) { return tree_.find(entity); });
  }

protected:
  void writeOne(std::uint64_t entity, int attribute, std::uint64_t value) {
    change_.set_entity(entity);
    change_.set_attribute(attribute);
    change_.set_wide(value);
    std::size_t const size = change_.ByteSizeLong();
    if (used_ + size + 5 > out_.size()) flush();
    auto* at = google::protobuf::io::CodedOutputStream::WriteVarint32ToArray(static_cast<std::uint32_t>(size),
                                                                             out_.data() + used_);
    at = change_.SerializeWithCachedSizesToArray(at);
    used_ = static_cast<std::size_t>(at - out_.data());
  }
  void flush() {
    sendAll(writerEnd(), out_.data(), used_);
    used_ = 0;
  }

  template <class EntityOf> void readAll(std::size_t changes, EntityOf entityOf) {
    std::vector<unsigned char> in(2 * kChunk);
    std::size_t there = 0;
    while (tree_.heard() < changes) {
      there += receive(readerEnd(), in.data() + there, in.size() - there);
      std::size_t const used = readSome(in.data(), there, entityOf);
      std::memmove(in.data(), in.data() + used, there - used);
      there -= used;
    }
    require(there == 0 && tree_.heard() == changes, "more has come than was sent");
  }

  PlainTree tree_;

private:
  // RETURNS how many bytes the whole messages took.
  template <class EntityOf>
  std::size_t readSome(unsigned char const* bytes, std::size_t size, EntityOf& entityOf) {
    std::size_t used = 0;
    while (used < size) {
      google::protobuf::io::CodedInputStream head(bytes + used,
                                                  static_cast<int>(std::min<std::size_t>(size - used, 5)));
      std::uint32_t length = 0;
      if (!head.ReadVarint32(&length)) break;
      std::size_t const at = used + static_cast<std::size_t>(head.CurrentPosition());
      if (size - at < length) break;
      require(change_.ParseFromArray(bytes + at, static_cast<int>(length)), "no message of protobuf");
      entityOf(change_.entity())->valueIs(static_cast<unsigned>(change_.attribute()), change_.wide());
      used = at + length;
    }
    return used;
  }

  bench_pb::Change change_;
  std::vector<unsigned char> out_ = std::vector<unsigned char>(kChunk);
  std::size_t used_ = 0;
};

// The same, to a reader that makes each entity when it first hears of it.
class ProtobufTreeRoad final : public ProtobufRoad {
public:
  void write(std::size_t changes) override {
    for (std::size_t i = 0; i < changes; ++i)
      writeOne(i / kAttributes, static_cast<int>(i % kAttributes), i + 1);
    flush();
  }
  void openReader() override {}
  void read(std::size_t changes) override {
    std::uint64_t last = ~0ULL;
    PlainEntity* entity = nullptr;
    readAll(changes, [&](std::uint64_t id) {
      if (id != last) entity = tree_.add(last = id);
      return entity;
    });
  }
};

template <class MadeRoad> void goes(benchmark::State& state) {
  auto const changes = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    MadeRoad road;
    try {
      Taken const taken = timeBetween({[&] { road.openWriter(); }, [&] { road.write(changes); },
                                       [&] { road.openReader(); }, [&] { road.read(changes); }});
      state.SetIterationTime(taken.fromStartToEnd);
      // Of each change, and less at the mercy of whatever else is running than the time by the clock.
      state.counters["writer_ns"] = 1e9 * taken.byWriter / static_cast<double>(changes);
      state.counters["reader_ns"] = 1e9 * taken.byReader / static_cast<double>(changes);
      state.counters["allocations"] = taken.allocationsByReader / static_cast<double>(changes);
    } catch (std::runtime_error const& error) {
      state.SkipWithError(error.what());
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// One change there and one back, again and again.
class RawPing : public SocketRoad {
public:
  explicit RawPing(int flags) : flags_(flags) {}

  // Sends back what comes.
  void write(std::size_t times) override {
    for (std::size_t i = 0; i < times; ++i) {
      receiveOne(writerEnd());
      sendAll(writerEnd(), bytes_.data(), bytes_.size());
    }
  }
  void read(std::size_t times) override {
    for (std::size_t i = 0; i < times; ++i) {
      sendAll(readerEnd(), bytes_.data(), bytes_.size());
      receiveOne(readerEnd());
    }
  }

private:
  void receiveOne(int end) {
    for (std::size_t there = 0; there < bytes_.size();) {
      auto const count = ::recv(end, bytes_.data() + there, bytes_.size() - there, flags_);
      require(count > 0 || (count < 0 && errno == EAGAIN), "recv");
      if (count > 0) there += static_cast<std::size_t>(count);
    }
  }

  int const flags_;
  std::array<char, kChangeBytes> bytes_{};
};

class SleepingRawPing final : public RawPing {
public:
  SleepingRawPing() : RawPing(0) {}
};
class PollingRawPing final : public RawPing {
public:
  PollingRawPing() : RawPing(MSG_DONTWAIT) {}
};

constexpr int kMany = 1000000;
constexpr int kSome = 200000; // Of those who take long; times are told for one.
constexpr int kRoundTrips = 10000;

#define ROAD(name, Kind, items) BENCHMARK(goes<Kind>)->Name(name)->Arg(items)->UseManualTime()->Iterations(1)
ROAD("changes/attribute log", ChangesRoad, kMany);
ROAD("changes/raw bytes", RawRoad, kMany);
ROAD("changes/ZeroMQ, not applied", ZeroMqRoad, kMany);
ROAD("changes/protobuf, applied", ProtobufRoad, kMany);
ROAD("changes/Redis stream, applied", RedisStreamRoad, kSome);
ROAD("changes/OVSDB monitor, applied", OvsdbChangesRoad, kSome);
ROAD("whole tree/attribute log", WholeTreeRoad, kMany);
ROAD("equal tree/attribute log", EqualTreeRoad, kMany);
ROAD("whole tree/protobuf, applied", ProtobufTreeRoad, kMany);
ROAD("whole tree/Redis replica", RedisReplicaRoad, RedisReplicaRoad::kKeys);
ROAD("whole tree/OVSDB monitor", OvsdbMonitorRoad, OvsdbMonitorRoad::kRows);
ROAD("there and back, sleeping/attribute log", SleepingPing, kRoundTrips);
ROAD("there and back, polling/attribute log", PollingPing, kRoundTrips);
ROAD("there and back, sleeping/raw bytes", SleepingRawPing, kRoundTrips);
ROAD("there and back, polling/raw bytes", PollingRawPing, kRoundTrips);
#undef ROAD

// Both processes in one, over memory.
void thereAndBackOverPipe(benchmark::State& state) {
  PipePing ping;
  for (auto _ : state) ping.once();
}
BENCHMARK(thereAndBackOverPipe)->Name("there and back, pipe/attribute log");

// How fast a reader follows, and what the writer's process takes from the heap meanwhile.
void follow(benchmark::State& state, bool besideSlow) {
  auto const changes = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    Followers followers(besideSlow);
    std::size_t const before = heapBytes();
    timed(state, [&] { followers.change(changes); });
    std::size_t const after = heapBytes();
    state.counters["reader_ns"] = 1e9 * followers.byFollower() / static_cast<double>(changes);
    state.counters["bytes"] = after > before ? static_cast<double>(after - before) : 0;
    if (besideSlow) followers.readOn();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(follow, alone, false)->Name("follow/alone")->Arg(kMany)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(follow, besideSlow, true)
    ->Name("follow/beside one that has stopped")
    ->Arg(kMany)
    ->UseManualTime()
    ->Iterations(1);

} // namespace

} // namespace Bench

BENCHMARK_MAIN();
