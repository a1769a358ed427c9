#include "Vyx/EntityStrep.h"

#include "Vyx/GenericIfEntity.h"
#include "Vyx/PathPiece.h"

#include <cstdlib>
#include <cxxabi.h>
#include <map>
#include <memory>

namespace Vyx {

namespace {

constexpr std::string_view kNull = "null";

// By name; kept until the process ends.
using Roots = std::map<Name, Ptr<Entity>>;
Roots& roots() {
  static auto* table = new Roots;
  return *table;
}

std::string readableName(std::type_info const& type) {
  std::unique_ptr<char, void (*)(void*)> const name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr), &std::free);
  return name ? name.get() : type.name();
}

// A key may begin and end with a quote, of which readers of texts take a pair off.
Ptr<GenericIf> keyFromText(VyxType const& type, std::string const& text) {
  Ptr<GenericIf> key = type.valueFromStrep(String8(text));
  bool const isQuoted = text.size() >= 2 && text.front() == '\'' && text.back() == '\'';
  if (isQuoted && key->strRep() != String8(text)) key = type.valueFromStrep(String8("'" + text + "'"));
  return key;
}

// Follows one reference from its root.
class Reference {
public:
  explicit Reference(std::string_view text) : text_(text), rest_(text) {}

  Ptr<Entity> entity() {
    std::string const root = take();
    Ptr<Entity> at = entityRoot(Name(root));
    if (!at) refuse("no root is entered as " + root);
    while (!ended_) at = below(at);
    return at;
  }

private:
  // The next piece. REQUIRES: one is left.
  std::string take() {
    std::size_t const slash = rest_.find('/');
    std::string piece = unescapedPiece(rest_.substr(0, slash));
    ended_ = slash == rest_.npos;
    rest_ = ended_ ? std::string_view() : rest_.substr(slash + 1);
    return piece;
  }

  Ptr<Entity> below(Ptr<Entity> const& parent) {
    VyxType const* const type = parent->fwkType();
    Ptr<GenericIf> const self = type ? type->genericIf(parent) : Ptr<GenericIf>();
    std::string const name = take();
    if (!self) refuse("no entity stands at " + name);
    VyxAttr const* const attr = type->attr(Name(name));
    if (!attr || !leadsOn(*attr))
      refuse(std::string(type->fullTypeName().view()) + " has no attribute " + name);
    Ptr<GenericIf const> const key = keyOf(*attr);
    Ptr<GenericIf> const found = self->attributeOp({attr->id(), GenericIf::AttributeOp::read}, key, {});
    auto const* const entity = dynamic_cast<GenericIfEntity const*>(found.ptr());
    if (!entity) refuse("no entity stands at " + name);
    return entity->entity();
  }

  // Whether an entity can stand at the attribute: functions have no place in a path.
  static bool leadsOn(VyxAttr const& attr) {
    return attr.ops() && !(attr.introspection() == VyxAttr::VyxAttrIntrospectionFlags::isFunction_());
  }

  // Null for an attribute that has none.
  Ptr<GenericIf const> keyOf(VyxAttr const& attr) {
    VyxType const* const type = attr.keyAttr() ? attr.keyAttr()->valueType() : attr.keyType();
    if (!type) return {};
    if (ended_) refuse("no key stands behind " + std::string(attr.name().view()));
    return keyFromText(*type, take());
  }

  [[noreturn]] void refuse(std::string const& reason) const { throwBadText("Entity", text_, reason); }

  std::string_view text_;
  std::string_view rest_;
  bool ended_ = false;
};

Roots::value_type const* entryOf(Entity const* root) {
  for (auto const& entry : roots())
    if (entry.second.ptr() == root) return &entry;
  return nullptr;
}

// The entity by whose path this one's path begins; null for a root.
Entity const* above(Entity const* entity) { return entity->parentAttr() ? entity->vyxParent() : nullptr; }

} // namespace

void entityRootIs(Name const& name, Ptr<Entity> const& root) {
  if (name.empty() || name.view() == kNull)
    throwBadText("Entity", name.view(), "no reference to an entity can begin with it");
  if (root)
    roots()[name] = root;
  else
    roots().erase(name);
}

Ptr<Entity> entityRoot(Name const& name) {
  auto const found = roots().find(name);
  return found == roots().end() ? Ptr<Entity>() : found->second;
}

String8 valueToStrepOfRawPtr(PtrInterface const* object, std::type_info const& type) {
  if (!object) return kNull;
  auto const* const entity = dynamic_cast<Entity const*>(object);
  if (!entity) return String8("/" + escapedPiece(readableName(type)));
  std::string const path(entity->uriPath().view());
  for (Entity const* root = entity; root; root = above(root))
    if (auto const* entry = entryOf(root))
      return String8(escapedPiece(entry->first.view()) + path.substr(root->uriPath().length()));
  return String8("/" + path);
}

Ptr<Entity> sequenceToValueOfPtr(StrepIterator8& at, StrepIterator8 const& end, Ptr<Entity>*) {
  std::string_view const word = frontWord(stretch(at, end));
  Ptr<Entity> entity;
  if (!word.empty() && word != kNull) entity = Reference(word).entity();
  advance(at, word.size());
  return entity;
}

void cannotConvert(StrepIterator8 const& begin, StrepIterator8 const& end, std::type_info const& type) {
  throwBadText(readableName(type).c_str(), stretch(begin, end), "an entity of another type");
}

} // namespace Vyx
