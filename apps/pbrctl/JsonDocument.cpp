#include "pbrctl/JsonDocument.h"

#include <iterator>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace Pbrctl {

namespace {

constexpr std::size_t kMostDepth = 16;

// Walks the source for the parser and tells how far it got.
class CountingIterator {
public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = char const*;
  using reference = char const&;

  CountingIterator(char const* at, char const** shared) : at_(at), shared_(shared) {}
  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    *shared_ = ++at_;
    return *this;
  }
  bool operator==(CountingIterator const& o) const { return at_ == o.at_; }
  bool operator!=(CountingIterator const& o) const { return at_ != o.at_; }

private:
  char const* at_;
  char const** shared_; // Where the parser's own copy of this iterator stands.
};

// Builds the tree. Between two events of the parser stand only white space, commas and colons: the place of a
// token is where they end.
class Builder : public nlohmann::json::json_sax_t {
public:
  Builder(SourceText const& source, Diagnostics& diagnostics)
      : source_(source), diagnostics_(diagnostics), at_(source.bytes().data()) {}

  char const** at() { return &at_; }
  std::unique_ptr<JsonValue> take() { return std::move(root_); }

  bool null() override {
    return enter(JsonValue::Kind::null, [](JsonValue&) {});
  }
  bool boolean(bool value) override {
    return enter(JsonValue::Kind::boolean, [=](JsonValue& v) { v.boolean = value; });
  }
  bool number_integer(number_integer_t value) override {
    return enter(JsonValue::Kind::fraction, [=](JsonValue& v) { v.text = std::to_string(value); });
  }
  bool number_unsigned(number_unsigned_t value) override {
    return enter(JsonValue::Kind::number, [=](JsonValue& v) { v.number = value; });
  }
  bool number_float(number_float_t, string_t const& word) override {
    return enter(JsonValue::Kind::fraction, [&](JsonValue& v) { v.text = word; });
  }
  bool string(string_t& value) override {
    return enter(JsonValue::Kind::text, [&](JsonValue& v) { v.text = std::move(value); });
  }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override { return open(JsonValue::Kind::object); }
  bool start_array(std::size_t) override { return open(JsonValue::Kind::array); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    std::size_t const offset = tokenStart();
    keyOffset_ = offset;
    key_ = name;
    if (!names_.back().insert(name).second)
      diagnostics_.error(source_.placeOf(offset), "duplicate member " + inQuotes(name));
    tokenDone();
    return true;
  }

  bool parse_error(std::size_t position, std::string const&, nlohmann::json::exception const& e) override {
    std::string const what = e.what();
    // "[json.exception.parse_error.101] parse error at line 1, column 2: text"
    std::size_t const colon = what.find(": ");
    std::size_t const offset = std::min(position == 0 ? 0 : position - 1, source_.bytes().size());
    diagnostics_.error(source_.placeOf(offset),
                       "no valid JSON: " +
                           (colon == std::string::npos ? what : clipped(what.substr(colon + 2))));
    return false;
  }

private:
  // The parser quotes what it read last, which may be very long.
  static std::string clipped(std::string text) {
    if (text.size() > 200) text = text.substr(0, 200) + "...";
    for (char& c : text)
      if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7f) c = '?';
    return text;
  }

  std::size_t tokenStart() const {
    std::string_view const all = source_.bytes();
    std::size_t const start = all.find_first_not_of(" \t\r\n,:", done_);
    return start == std::string_view::npos ? all.size() : start;
  }
  // The parser may have looked at one character behind a number; that is white space or punctuation.
  void tokenDone() { done_ = static_cast<std::size_t>(at_ - source_.bytes().data()); }

  JsonValue& place() {
    if (open_.empty()) {
      root_ = std::make_unique<JsonValue>();
      return *root_;
    }
    JsonValue& in = *open_.back();
    if (in.kind == JsonValue::Kind::array) return in.items.emplace_back();
    in.members.push_back({std::move(key_), keyOffset_, {}});
    return in.members.back().value;
  }

  template <class Fill> bool enter(JsonValue::Kind kind, Fill fill) {
    JsonValue& value = place();
    value.kind = kind;
    value.offset = tokenStart();
    fill(value);
    // A closing bracket behind a number may have been looked at already; its event comes next and finds it.
    done_ = kind == JsonValue::Kind::number || kind == JsonValue::Kind::fraction ? numberEnd(value.offset)
                                                                                 : doneNow();
    return true;
  }
  std::size_t doneNow() const { return static_cast<std::size_t>(at_ - source_.bytes().data()); }
  std::size_t numberEnd(std::size_t start) const {
    std::size_t const end = source_.bytes().find_first_not_of("+-.0123456789eE", start);
    return end == std::string_view::npos ? source_.bytes().size() : end;
  }

  bool open(JsonValue::Kind kind) {
    JsonValue& value = place();
    value.kind = kind;
    value.offset = tokenStart();
    if (open_.size() == kMostDepth) {
      diagnostics_.error(source_.placeOf(value.offset), "nested deeper than " + std::to_string(kMostDepth));
      return false;
    }
    open_.push_back(&value);
    names_.emplace_back();
    done_ = value.offset + 1;
    return true;
  }

  bool close() {
    open_.pop_back();
    names_.pop_back();
    done_ = tokenStart() + 1;
    return true;
  }

  SourceText const& source_;
  Diagnostics& diagnostics_;
  char const* at_;       // Where the parser stands.
  std::size_t done_ = 0; // Behind the last token that an event was about.
  std::unique_ptr<JsonValue> root_;
  std::vector<JsonValue*> open_; // From the root to the innermost; a parent grows only while it is innermost.
  std::vector<std::unordered_set<std::string>> names_;
  std::string key_;
  std::size_t keyOffset_ = 0;
};

bool checkBytes(SourceText const& source, Diagnostics& diagnostics) {
  for (std::size_t i = 0; i < source.lines(); ++i)
    if (auto const bad = findBadByte(source.line(i)))
      diagnostics.error({static_cast<std::uint32_t>(i + 1), static_cast<std::uint32_t>(bad->offset + 1)},
                        bad->text);
  return diagnostics.ok();
}

} // namespace

char const* kindName(JsonValue::Kind kind) {
  switch (kind) {
  case JsonValue::Kind::null:
    break;
  case JsonValue::Kind::boolean:
    return "true or false";
  case JsonValue::Kind::number:
    return "a whole number";
  case JsonValue::Kind::fraction:
    return "a negative or broken number";
  case JsonValue::Kind::text:
    return "a text";
  case JsonValue::Kind::array:
    return "an array";
  case JsonValue::Kind::object:
    return "an object";
  }
  return "null";
}

std::unique_ptr<JsonValue> readJson(SourceText const& source, Diagnostics& diagnostics) {
  if (!checkBytes(source, diagnostics)) return nullptr;
  Builder builder(source, diagnostics);
  std::string_view const all = source.bytes();
  bool const whole =
      nlohmann::json::sax_parse(CountingIterator(all.data(), builder.at()),
                                CountingIterator(all.data() + all.size(), builder.at()), &builder);
  return whole && diagnostics.ok() ? builder.take() : nullptr;
}

} // namespace Pbrctl
