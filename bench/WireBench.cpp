// Changes of single attributes, written to a run of bytes and read back one by one: entity, attribute, flags
// and a value, a quarter each a bool, a number of 32 bits, one of 64, an address with a bool. Beside it
// protobuf, one message each behind its length, its objects reused.

#include "Heap.h"
#include "Processor.h"

#include "Lomu/IpGenAddr.h"
#include "Vyx/NboAttrLog/ValueCodec.h"

#include "wire.pb.h"

#include <google/protobuf/io/coded_stream.h>

#include <random>
#include <string>
#include <vector>

namespace Bench {

namespace {

using Vyx::EntityId;
using Vyx::NboAttrLog::In;
using Vyx::NboAttrLog::MsgHeader;
using Vyx::NboAttrLog::Out;

constexpr std::size_t kChanges = 4096;

enum Kind : std::uint8_t { kFlag, kNumber, kWide, kKeyed };

struct Change {
  EntityId entity;
  Vyx::AttributeId attribute;
  Kind kind;
  bool flag = false;
  std::uint32_t number = 0;
  unsigned long long wide = 0;
  Lomu::IpGenAddr address;

  bool operator==(Change const&) const = default;
};

std::vector<Change> randomChanges() {
  std::mt19937_64 random(20);
  std::vector<Change> changes(kChanges);
  std::size_t i = 0;
  for (Change& change : changes) {
    change.entity = EntityId::fromValue(random() % 20000 * 2 + 1);
    change.kind = static_cast<Kind>(i++ % 4);
    change.attribute = 258 + static_cast<int>(random() % 8);
    change.flag = (change.kind == kFlag || change.kind == kKeyed) && random() % 2;
    if (change.kind == kNumber) change.number = static_cast<std::uint32_t>(random());
    if (change.kind == kWide) change.wide = random();
    if (change.kind != kKeyed) continue;
    unsigned char bytes[Lomu::Ip6Addr::kBytes];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    change.address = Lomu::IpGenAddr(6, Lomu::Ip6Addr(bytes));
  }
  std::shuffle(changes.begin(), changes.end(), random);
  return changes;
}

// Each subject writes all changes to a run of bytes, and reads them off it again.

class LogSubject {
public:
  void write(std::vector<Change> const& changes) {
    for (Change const& change : changes) write(change);
  }
  // Hands the bytes over, as a connection does.
  std::size_t deliver() {
    auto const bytes = out_->pending();
    while (in_.space().size() < bytes.size()) in_.reset();
    std::memcpy(in_.space().data(), bytes.data(), bytes.size());
    in_.received(bytes.size());
    out_->consumed(bytes.size());
    return bytes.size();
  }
  void read(std::vector<Change>& changes) {
    for (Change& change : changes) {
      if (!in_.nextMessage()) return;
      read(change);
      in_.expectEnd();
    }
    in_.nextMessage();
  }

private:
  template <class... Values>
  void message(Change const& change, bool variable, std::uint32_t length, Values const&... values) {
    out_->messageIs({change.entity, change.attribute, variable, length, Vyx::NboAttrLog::kPlain, 0},
                    values...);
  }
  void write(Change const& change) {
    switch (change.kind) {
    case kFlag:
      return message(change, false, 1, change.flag);
    case kNumber:
      return message(change, false, 4, change.number);
    case kWide:
      return message(change, false, 8, change.wide);
    case kKeyed:
      return message(change, true, 0, change.address, change.flag);
    }
  }
  void read(Change& change) {
    MsgHeader const& header = in_.header();
    change.entity = header.entityId;
    change.attribute = header.attrId;
    switch (header.fixedLength) {
    case 1:
      change.kind = kFlag;
      change.flag = in_.nextbool();
      break;
    case 4:
      change.kind = kNumber;
      change.number = in_.nextU32();
      break;
    case 8:
      change.kind = kWide;
      change.wide = in_.nextU64();
      break;
    default:
      change.kind = kKeyed;
      std::construct_at(&change.address, &in_, Vyx::StreamBogon());
      change.flag = in_.nextbool();
    }
  }

  Vyx::Ptr<Out> out_ = Vyx::ptrFromNew(new Out(1U << 20));
  Vyx::Ptr<In> inHeld_ = Vyx::ptrFromNew(new In(1U << 20));
  In& in_ = *inHeld_;
};

void setKeyed(bench_pb::Change& message, Change const& change) {
  message.mutable_keyed()->set_address(&change.address, sizeof change.address);
  message.mutable_keyed()->set_usable(change.flag);
}
void getKeyed(bench_pb::Change const& message, Change& change) {
  std::memcpy(&change.address, message.keyed().address().data(), sizeof change.address);
  change.flag = message.keyed().usable();
}
void setKeyed(bench_pb::FlatChange& message, Change const& change) {
  message.set_address(&change.address, sizeof change.address);
  message.set_flag(change.flag);
}
void getKeyed(bench_pb::FlatChange const& message, Change& change) {
  std::memcpy(&change.address, message.address().data(), sizeof change.address);
  change.flag = message.flag();
}

template <class Message> class MessageSubject {
public:
  MessageSubject() : bytes_(64 * kChanges, '\0') {}

  void write(std::vector<Change> const& changes) {
    auto* to = reinterpret_cast<unsigned char*>(bytes_.data());
    for (Change const& change : changes) to = write(change, to);
    end_ = to;
  }
  std::size_t deliver() { return static_cast<std::size_t>(end_ - begin()); }
  void read(std::vector<Change>& changes) {
    unsigned char const* at = begin();
    for (Change& change : changes) at = read(change, at);
  }

private:
  unsigned char const* begin() const { return reinterpret_cast<unsigned char const*>(bytes_.data()); }
  unsigned char* write(Change const& change, unsigned char* to) {
    using google::protobuf::io::CodedOutputStream;
    written_.Clear();
    written_.set_entity(change.entity.value());
    written_.set_attribute(change.attribute);
    written_.set_flags(change.kind + 1U);
    switch (change.kind) {
    case kFlag:
      written_.set_flag(change.flag);
      break;
    case kNumber:
      written_.set_number(change.number);
      break;
    case kWide:
      written_.set_wide(change.wide);
      break;
    case kKeyed:
      setKeyed(written_, change);
    }
    to = CodedOutputStream::WriteVarint32ToArray(static_cast<std::uint32_t>(written_.ByteSizeLong()), to);
    return written_.SerializeWithCachedSizesToArray(to);
  }
  unsigned char const* read(Change& change, unsigned char const* at) {
    int const size = *at++; // Each is shorter than 128 bytes.
    read_.ParseFromArray(at, size);
    change.entity = EntityId::fromValue(read_.entity());
    change.attribute = read_.attribute();
    change.kind = static_cast<Kind>(read_.flags() - 1);
    switch (change.kind) {
    case kFlag:
      change.flag = read_.flag();
      break;
    case kNumber:
      change.number = read_.number();
      break;
    case kWide:
      change.wide = read_.wide();
      break;
    case kKeyed:
      getKeyed(read_, change);
    }
    return at + size;
  }

  std::string bytes_;
  unsigned char* end_ = nullptr;
  Message written_;
  Message read_;
};

enum class Timed { encode, decode, both };

// What was read is held against what was written, each time.
template <class Subject> void roundTrip(benchmark::State& state, Timed what) {
  std::vector<Change> const changes = randomChanges();
  Subject subject;
  std::vector<Change> read(kChanges);
  std::size_t bytes = 0;
  for (auto _ : state) {
    for (Change& change : read) change = Change{};
    std::uint64_t const before = allocations();
    double const begun = processorTime();
    subject.write(changes);
    double const written = processorTime();
    bytes = subject.deliver();
    double const delivered = processorTime();
    subject.read(read);
    double const ended = processorTime();
    state.counters["allocations"] = static_cast<double>(allocations() - before);
    state.SetIterationTime((what == Timed::decode ? 0 : written - begun) +
                           (what == Timed::encode ? 0 : ended - delivered));
    if (read != changes) state.SkipWithError("what was read is not what was written");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kChanges));
  state.counters["bytes"] = static_cast<double>(bytes) / kChanges;
}

template <class Subject> void registerSubject(std::string const& name) {
  for (auto const& [scenario, what] : {std::pair<char const*, Timed>{"encode/", Timed::encode},
                                       {"decode/", Timed::decode},
                                       {"encode and decode/", Timed::both}})
    benchmark::RegisterBenchmark((scenario + name).c_str(), roundTrip<Subject>, what)->UseManualTime();
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using namespace Bench;
  registerSubject<LogSubject>("attribute log");
  registerSubject<MessageSubject<bench_pb::Change>>("protobuf");
  registerSubject<MessageSubject<bench_pb::FlatChange>>("flat protobuf");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
