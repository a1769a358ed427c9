#include "pbrctl/SourceText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Pbrctl {

namespace {

constexpr std::size_t kMostNameBytes = 100;
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

class OpenFile {
public:
  explicit OpenFile(std::string const& path) : fd_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() {
    if (fd_ >= 0) ::close(fd_);
  }
  int fd() const { return fd_; }

private:
  int fd_;
};

// RETURNS what went wrong, or null.
char const* slurp(int fd, std::string& bytes) {
  char buffer[1 << 16];
  for (;;) {
    ssize_t const got = ::read(fd, buffer, sizeof buffer);
    if (got == 0) return nullptr;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::strerror(errno);
    bytes.append(buffer, static_cast<std::size_t>(got));
    if (bytes.size() > SourceText::kMostBytes) return "the file is larger than 64 MiB";
  }
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// RETURNS the length of the UTF-8 sequence at the head of `text` and its code point; 0 when it is broken.
std::size_t decode(std::string_view text, std::uint32_t& codePoint) {
  auto const at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned char const lead = at(0);
  std::size_t const length = lead < 0x80       ? 1
                             : lead >> 5 == 6  ? 2
                             : lead >> 4 == 14 ? 3
                             : lead >> 3 == 30 ? 4
                                               : 0;
  if (length == 0 || text.size() < length) return 0;
  codePoint = length == 1 ? lead : lead & (0x7fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (at(i) >> 6 != 2) return 0;
    codePoint = codePoint << 6 | (at(i) & 0x3f);
  }
  static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  bool const surrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
  return codePoint < kLeast[length] || codePoint > 0x10ffff || surrogate ? 0 : length;
}

bool prints(std::uint32_t codePoint) {
  if (codePoint <= 0x20 || (codePoint >= 0x7f && codePoint <= 0xa0)) return false;
  return codePoint != 0x2028 && codePoint != 0x2029 && codePoint != 0xfeff;
}

} // namespace

std::optional<SourceText> SourceText::read(std::string const& path, Diagnostics& diagnostics) {
  auto const refused = [&](std::string const& why) {
    diagnostics.error({}, why);
    return std::nullopt;
  };
  OpenFile const file(path);
  if (file.fd() < 0) return refused(std::string("cannot be opened: ") + std::strerror(errno));
  struct stat about {};
  if (::fstat(file.fd(), &about) != 0) return refused(std::string("cannot be read: ") + std::strerror(errno));
  if (S_ISDIR(about.st_mode)) return refused("is a directory, not a file");
  std::string bytes;
  if (char const* const why = slurp(file.fd(), bytes)) return refused(std::string("cannot be read: ") + why);
  SourceText source(path, std::move(bytes));
  std::string_view const all = source.bytes();
  if (std::all_of(all.begin(), all.end(), isBlank)) return refused("the file is empty");
  return source;
}

SourceText::SourceText(std::string name, std::string bytes)
    : name_(std::move(name)), bytes_(std::move(bytes)) {
  if (bytes_.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) start_ = kByteOrderMark.size();
  std::string_view const all = this->bytes();
  for (std::size_t start = 0; start < all.size();) {
    lineStarts_.push_back(start);
    std::size_t const end = all.find('\n', start);
    start = end == std::string_view::npos ? all.size() : end + 1;
  }
}

bool SourceText::isJson() const {
  if (name_.size() >= 5 && name_.compare(name_.size() - 5, 5, ".json") == 0) return true;
  std::string_view const all = bytes();
  auto const first = std::find_if_not(all.begin(), all.end(), isBlank);
  return first != all.end() && (*first == '{' || *first == '[');
}

std::string_view SourceText::line(std::size_t index) const {
  std::size_t const start = lineStarts_[index];
  std::size_t const next = index + 1 < lineStarts_.size() ? lineStarts_[index + 1] : bytes().size();
  std::string_view line = bytes().substr(start, next - start);
  if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

Place SourceText::placeOf(std::size_t offset) const {
  auto const after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  if (after == lineStarts_.begin()) return {};
  auto const line = static_cast<std::uint32_t>(after - lineStarts_.begin());
  return {line, static_cast<std::uint32_t>(offset - *(after - 1) + 1)};
}

std::optional<BadByte> findBadByte(std::string_view line) {
  for (std::size_t i = 0; i < line.size();) {
    auto const byte = static_cast<unsigned char>(line[i]);
    if (byte >= 0x20 && byte < 0x7f) {
      ++i;
      continue;
    }
    std::uint32_t codePoint = 0;
    std::size_t const length = decode(line.substr(i), codePoint);
    if (length == 0) return BadByte{i, "the text is not valid UTF-8"};
    if (codePoint == 0) return BadByte{i, "NUL byte in the text"};
    if ((codePoint < 0x20 && codePoint != '\t') || codePoint == 0x7f)
      return BadByte{i, "control character in the text"};
    i += length;
  }
  return std::nullopt;
}

std::optional<std::string> nameProblem(std::string_view name) {
  if (name.empty()) return "a name must not be empty";
  if (name.size() > kMostNameBytes)
    return "the name " + inQuotes(name) + " has " + std::to_string(name.size()) + " bytes, more than 100";
  if (name[0] == '!' || name[0] == '#') return "the name " + inQuotes(name) + " begins like a comment";
  for (std::size_t i = 0; i < name.size();) {
    std::uint32_t codePoint = 0;
    std::size_t const length = decode(name.substr(i), codePoint);
    if (length == 0 || !prints(codePoint))
      return "the name " + inQuotes(name) + " holds a blank or a character that does not print";
    i += length;
  }
  return std::nullopt;
}

} // namespace Pbrctl
