#include "SourceFile.h"

#include <algorithm>
#include <utility>

namespace vyxc {

namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// RETURNS the length of the character whose first bytes are at the head of `text`, 0 if it is malformed.
std::size_t characterLength(std::string_view text) {
  auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  auto const first = at(0);
  if (first < 0x80) return 1;
  std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return 0;
  }
  // Overlong forms, surrogates and what lies past the last character.
  auto const second = at(1);
  bool const wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                     (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return wrong ? 0 : length;
}

} // namespace

SourceFile::SourceFile(std::string path, std::string text) : path_(std::move(path)), text_(std::move(text)) {
  lineStarts_.push_back(0);
  for (std::size_t i = 0; i < text_.size(); ++i) {
    if (text_[i] == '\n') lineStarts_.push_back(i + 1);
  }
}

Position SourceFile::position(std::size_t offset) const {
  offset = std::min(offset, text_.size());
  auto const after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  auto const line = static_cast<std::size_t>(after - lineStarts_.begin());
  auto const head = std::string_view(text_).substr(lineStarts_[line - 1], offset - lineStarts_[line - 1]);
  auto const continued = std::count_if(head.begin(), head.end(), isContinuation);
  return {line, head.size() - static_cast<std::size_t>(continued) + 1};
}

std::string_view SourceFile::lineText(std::size_t line) const {
  auto const begin = lineStarts_[line - 1];
  auto const end = line < lineStarts_.size() ? lineStarts_[line] - 1 : text_.size();
  auto text = std::string_view(text_).substr(begin, end - begin);
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  return text;
}

std::size_t firstInvalidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    auto const length = characterLength(text.substr(i));
    if (length == 0) return i;
    i += length;
  }
  return std::string_view::npos;
}

} // namespace vyxc
