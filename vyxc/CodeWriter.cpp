#include "CodeWriter.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace vyxc {

namespace {

constexpr std::size_t kStep = 2;
constexpr std::size_t kContinued = 4;

// Where a line may be broken. `columns` are those behind the brackets that are open there.
struct Break {
  std::size_t at;
  std::vector<std::size_t> columns;
};

// Behind the outermost comma that still fits; of several such commas, the last.
std::optional<Break> findBreak(std::string_view text, std::size_t indent, std::vector<std::size_t> columns) {
  std::optional<Break> best;
  bool inString = false;
  for (std::size_t i = 0; i + 1 < text.size() && indent + i < CodeWriter::kWidth; ++i) {
    char const c = text[i];
    if (c == '"') inString = !inString;
    if (inString) continue;
    if (c == '(' || c == '<' || c == '{' || c == '[') columns.push_back(indent + i + 1);
    bool const closes = c == ')' || c == '}' || c == ']' || (c == '>' && i > 0 && text[i - 1] != '-');
    if (closes && !columns.empty()) columns.pop_back();
    if (c != ',' || text[i + 1] != ' ' || columns.empty()) continue;
    if (!best || columns.size() <= best->columns.size()) best = {i + 1, columns};
  }
  return best;
}

struct Line {
  std::size_t indent;
  std::string text;
};

// Filled from the left; what offers no break stays wide. `columns` are those behind brackets that are open
// already.
std::vector<Line> brokenLines(std::string_view text, std::size_t indent,
                              std::vector<std::size_t> columns = {}) {
  std::vector<Line> result;
  while (indent + text.size() > CodeWriter::kWidth) {
    auto found = findBreak(text, indent, columns);
    if (!found) break;
    result.push_back({indent, std::string(text.substr(0, found->at))});
    text.remove_prefix(found->at + 1);
    columns = std::move(found->columns);
    indent = columns.back();
  }
  result.push_back({indent, std::string(text)});
  return result;
}

} // namespace

void CodeWriter::put(std::size_t indent, std::string_view text) {
  text_.append(indent, ' ').append(text).append("\n");
}

void CodeWriter::line(std::string_view text) {
  if (fits(text.size())) return put(indent_, text);
  wrapped(text, indent_);
}

void CodeWriter::wrapped(std::string_view text, std::size_t indent) {
  auto chosen = brokenLines(text, indent);
  // Behind the `=` of an alias if that saves a break within the list; behind the brace of a braced list if it
  // saves a line.
  auto consider = [&](std::string_view opening, std::size_t length, std::size_t slack) {
    auto const at = text.find(opening);
    if (at == std::string_view::npos) return;
    auto const continued = indent_ + kContinued;
    std::vector<std::size_t> const columns(opening == "(" ? 1 : 0, continued);
    auto rest = brokenLines(text.substr(at + opening.size()), continued, columns);
    if (rest.size() + 1 > chosen.size() - 1 + slack) return;
    rest.insert(rest.begin(), {indent, std::string(text.substr(0, at + length))});
    chosen = std::move(rest);
  };
  auto isWide = [](Line const& line) { return line.indent + line.text.size() > kWidth; };
  // Behind the bracket of the parameters if what stands in front of it leaves them no width.
  if (std::any_of(chosen.begin(), chosen.end(), isWide)) consider("(", 1, text.size());
  if (text.starts_with("using ")) consider(" = ", 2, 1);
  if (text.ends_with("};")) consider("{", 1, 0);
  for (auto const& [column, part] : chosen) put(column, part);
}

void CodeWriter::doc(std::string_view doc) {
  while (!doc.empty()) {
    auto const end = doc.find('\n');
    auto const text = doc.substr(0, end);
    put(indent_, text.empty() ? "//" : "// " + std::string(text));
    doc.remove_prefix(end == std::string_view::npos ? doc.size() : end + 1);
  }
}

void CodeWriter::open(std::string_view text) {
  line(text);
  indent_ += kStep;
}

void CodeWriter::openList(std::string_view text) {
  line(text);
  indent_ += kContinued;
}

void CodeWriter::closeList(std::string_view text) {
  indent_ -= kContinued;
  put(indent_, text);
}

void CodeWriter::strings(std::string_view head, std::vector<std::string> const& parts) {
  std::size_t widest = 0;
  for (auto const& part : parts) widest = std::max(widest, part.size() + 2);
  bool const beside = indent_ + head.size() + 1 + widest < kWidth;
  auto const indent = indent_ + (beside ? head.size() + 1 : kContinued);
  if (!beside) put(indent_, head);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    auto const text = '"' + parts[i] + (i + 1 < parts.size() ? "\"" : "\";");
    if (i == 0 && beside) {
      put(indent_, std::string(head) + " " + text);
    } else {
      put(indent, text);
    }
  }
}

void CodeWriter::close(std::string_view text) {
  indent_ -= kStep;
  put(indent_, text);
}

void CodeWriter::access(std::string_view word) { put(indent_ - kStep, std::string(word) + ":"); }

void CodeWriter::function(std::string_view signature, std::string_view statement) {
  auto const body = statement.empty() ? std::string("{}") : "{ " + std::string(statement) + " }";
  if (fits(signature.size() + 1 + body.size())) return put(indent_, std::string(signature) + " " + body);
  if (statement.empty()) return line(std::string(signature) + " {}");
  function(signature, std::vector<std::string>{std::string(statement), ""});
}

void CodeWriter::function(std::string_view signature, std::vector<std::string> const& statements) {
  if (statements.empty()) return function(signature, "");
  if (statements.size() == 1) return function(signature, statements[0]);
  open(std::string(signature) + " {");
  for (auto const& statement : statements) {
    if (!statement.empty()) line(statement);
  }
  close();
}

void CodeWriter::constructor(std::string_view signature, std::vector<std::string> const& initializers,
                             std::vector<std::string> const& statements) {
  std::string const end = statements.empty() ? " {}" : " {";
  auto const whole = std::string(signature) + " : " + joined(initializers) + end;
  if (statements.size() == 1 && fits(whole.size() + 1 + statements[0].size() + 2)) {
    return put(indent_, whole + " " + statements[0] + " }");
  }
  if (fits(whole.size())) {
    put(indent_, whole);
  } else {
    line(signature);
    initializerList(initializers, end);
  }
  if (statements.empty()) return;
  indent_ += kStep;
  for (auto const& statement : statements) line(statement);
  close();
}

void CodeWriter::initializerList(std::vector<std::string> const& initializers, std::string_view end) {
  std::string current = ": ";
  std::size_t indent = indent_ + kContinued;
  for (std::size_t i = 0; i < initializers.size(); ++i) {
    auto const part = initializers[i] + (i + 1 < initializers.size() ? std::string(",") : std::string(end));
    bool const isFirst = current.empty() || current == ": ";
    if (!isFirst && indent + current.size() + 1 + part.size() > kWidth) {
      put(indent, current);
      indent = indent_ + kContinued + 2;
      current.clear();
    }
    current += (current.empty() || current == ": " ? "" : " ") + part;
  }
  put(indent, current);
}

void CodeWriter::openClass(std::string_view head, std::string_view base) {
  if (fits(head.size() + base.size() + 5)) {
    put(indent_, std::string(head) + " : " + std::string(base) + " {");
  } else {
    put(indent_, head);
    wrapped(": " + std::string(base) + " {", indent_ + kContinued);
  }
  indent_ += kStep;
}

std::string joined(std::vector<std::string> const& parts) {
  std::string result;
  for (auto const& part : parts) result += (result.empty() ? "" : ", ") + part;
  return result;
}

} // namespace vyxc
