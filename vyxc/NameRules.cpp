#include "NameRules.h"

#include <algorithm>
#include <array>

namespace vyxc {

namespace {

template <std::size_t n> bool contains(std::array<std::string_view, n> const& sorted, std::string_view name) {
  return std::binary_search(sorted.begin(), sorted.end(), name);
}

constexpr auto kKeywords = std::to_array<std::string_view>({
    "alignas",     "alignof",  "and",        "and_eq",    "asm",       "auto",         "bitand",
    "bitor",       "bool",     "break",      "case",      "catch",     "char",         "char16_t",
    "char32_t",    "char8_t",  "class",      "co_await",  "co_return", "co_yield",     "compl",
    "concept",     "const",    "const_cast", "consteval", "constexpr", "constinit",    "continue",
    "decltype",    "default",  "delete",     "do",        "double",    "dynamic_cast", "else",
    "enum",        "explicit", "export",     "extern",    "false",     "float",        "for",
    "friend",      "goto",     "if",         "inline",    "int",       "long",         "mutable",
    "namespace",   "new",      "noexcept",   "not",       "not_eq",    "nullptr",      "operator",
    "or",          "or_eq",    "private",    "protected", "public",    "register",     "reinterpret_cast",
    "requires",    "return",   "short",      "signed",    "sizeof",    "static",       "static_assert",
    "static_cast", "struct",   "switch",     "template",  "this",      "thread_local", "throw",
    "true",        "try",      "typedef",    "typeid",    "typename",  "union",        "unsigned",
    "using",       "virtual",  "void",       "volatile",  "wchar_t",   "while",        "xor",
    "xor_eq",
});
static_assert(std::is_sorted(kKeywords.begin(), kKeywords.end()));

constexpr auto kOfRoot = std::to_array<std::string_view>({
    "attributeString",
    "fullName",
    "handleParent",
    "isNondestructing",
    "name",
    "parent",
    "parentAttr",
    "uriPath",
});
static_assert(std::is_sorted(kOfRoot.begin(), kOfRoot.end()));

} // namespace

std::string refusedName(std::string_view name) {
  if (contains(kKeywords, name)) return "is a keyword of C++";
  if (name.starts_with("vyx") || name.starts_with("fwk")) return "begins as the runtime's own names do";
  if (name.starts_with('_') || name.ends_with('_') || name.find("__") != std::string_view::npos) {
    return "has an underscore where generated names have theirs";
  }
  return {};
}

bool isNameOfRoot(std::string_view name) { return contains(kOfRoot, name); }

// The other one, onParent, is that of an attribute that no schema may declare.
bool isEntryOfRoot(std::string_view entry) { return entry == "onVersion"; }

} // namespace vyxc
