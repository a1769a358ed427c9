#include "pbrctl/PathAccess.h"

#include "Vyx/TypeOf.h"
#include "pbrctl/Attributes.h"
#include "pbrctl/Diagnostics.h"

#include <cmath>
#include <optional>

namespace Pbrctl {

namespace {

using Vyx::GenericIf;
using Vyx::VyxAttr;
using Op = GenericIf::AttributeOp;
using Object = Vyx::Ptr<GenericIf>;
using Lines = std::vector<std::string>;

struct Step {
  std::string attribute;
  std::optional<std::string> key;
};

[[noreturn]] void fail(std::string text) { throw PathError{std::move(text)}; }

Step takeStep(std::string_view& rest) {
  std::size_t const end = std::min(rest.find_first_of(".["), rest.size());
  if (end == 0) fail("the path has no attribute before " + inQuotes(rest));
  Step step{std::string(rest.substr(0, end)), std::nullopt};
  rest.remove_prefix(end);
  if (rest.empty() || rest[0] == '.') return step;
  std::size_t close = rest.find(']');
  while (close != std::string_view::npos && close + 1 < rest.size() && rest[close + 1] != '.')
    close = rest.find(']', close + 1);
  if (close == std::string_view::npos)
    fail("the bracket behind " + inQuotes(step.attribute) + " is not closed");
  step.key = std::string(rest.substr(1, close - 1));
  rest.remove_prefix(close + 1);
  return step;
}

std::vector<Step> stepsOf(std::string_view path) {
  std::vector<Step> steps;
  if (path == ".") return steps;
  if (path.empty()) fail("the path is empty");
  for (std::string_view rest = path;;) {
    steps.push_back(takeStep(rest));
    if (rest.empty()) return steps;
    rest.remove_prefix(1);
  }
}

VyxAttr const& attributeOf(GenericIf const& object, std::string const& name) {
  VyxAttr const* const attr = object.type()->attr(Vyx::Name(name));
  if (!attr || !attr->ops())
    fail(std::string(object.type()->fullTypeName().charPtr()) + " has no attribute " + inQuotes(name));
  return *attr;
}

// The key of a step as reflection takes it; null where the step has none.
Object indexOf(VyxAttr const& attr, Step const& step) {
  if (!step.key) return nullptr;
  if (!isKeyed(attr)) fail(inQuotes(step.attribute) + " is no collection and takes no key");
  return keyTypeOf(attr).valueFromStrep(Vyx::String8(*step.key));
}

Object member(GenericIf& object, VyxAttr const& attr, Step const& step) {
  Object const index = indexOf(attr, step);
  if (index) {
    Object const there = object.attributeOp({attr.id(), Op::contains}, index, nullptr);
    if (there->strRep() != Vyx::String8("true"))
      fail(inQuotes(step.attribute) + " has no member " + inQuotes(*step.key));
  }
  return object.attributeOp({attr.id(), Op::read}, index, nullptr);
}

// The object that all steps but the last lead to.
Object ownerOf(Object object, std::vector<Step> const& steps) {
  for (std::size_t i = 0; i + 1 < steps.size(); ++i) {
    VyxAttr const& attr = attributeOf(*object, steps[i].attribute);
    if (!holdsEntities(attr)) fail(inQuotes(steps[i].attribute) + " is a value; nothing lies below it");
    if (isKeyed(attr) && !steps[i].key)
      fail(inQuotes(steps[i].attribute) + " is a collection and needs a key");
    object = member(*object, attr, steps[i]);
    if (!object) fail(inQuotes(steps[i].attribute) + " is not set");
  }
  return object;
}

std::string textOf(VyxAttr const& attr, Object const& value) {
  if (!value) return "none";
  return (holdsEntities(attr) ? "-> " : "") + std::string(value->strRep().view());
}

void addMembers(GenericIf const& object, VyxAttr const& attr, Lines& lines) {
  for (auto at = object.attributeIteratorConst(attr.id()); at; ++at)
    lines.push_back(std::string(attr.name().view()) + "[" + plainText(*at.key()) +
                    "] = " + textOf(attr, at.value()));
}

Lines attributesOf(GenericIf& object) {
  Lines lines;
  for (Vyx::VyxType::AttributeQIteratorConst at(*object.type()); at; ++at) {
    if (!isData(*at) || at->id() == 0 || !at->ops()) continue;
    if (isKeyed(*at))
      addMembers(object, *at, lines);
    else
      lines.push_back(std::string(at->name().view()) + " = " +
                      textOf(*at, object.attributeOp({at->id(), Op::read}, nullptr, nullptr)));
  }
  return lines;
}

// No file could say it.
bool isNoNumber(GenericIf const& value) {
  return value.type() == Vyx::typeOf<double>() && !std::isfinite(*static_cast<double const*>(value.object()));
}

// What reflection and the readers of values raise is told as an error of the path.
template <class Act> auto reflecting(Act act) -> decltype(act()) {
  try {
    return act();
  } catch (Vyx::Exception const& e) {
    fail(e.what());
  }
}

} // namespace

PathAccess::PathAccess(Vyx::Ptr<Vyx::Entity> const& root) : root_(root->fwkType()->genericIf(root)) {}

std::vector<std::string> PathAccess::get(std::string_view path) const {
  return reflecting([&]() -> Lines {
    std::vector<Step> const steps = stepsOf(path);
    if (steps.empty()) return attributesOf(*root_);
    Object const owner = ownerOf(root_, steps);
    VyxAttr const& attr = attributeOf(*owner, steps.back().attribute);
    if (isKeyed(attr) && !steps.back().key) {
      Lines lines;
      addMembers(*owner, attr, lines);
      return lines;
    }
    Object const value = member(*owner, attr, steps.back());
    if (value && holdsEntities(attr)) return attributesOf(*value);
    return {value ? std::string(value->strRep().view()) : "none"};
  });
}

void PathAccess::set(std::string_view path, std::string const& value) const {
  reflecting([&] {
    std::vector<Step> const steps = stepsOf(path);
    if (steps.empty()) fail("the root takes no value");
    Object const owner = ownerOf(root_, steps);
    VyxAttr const& attr = attributeOf(*owner, steps.back().attribute);
    if (holdsEntities(attr)) fail(inQuotes(steps.back().attribute) + " holds entities and takes no value");
    if (isKeyed(attr) && !steps.back().key)
      fail(inQuotes(steps.back().attribute) + " is a collection and needs a key");
    Object const index = indexOf(attr, steps.back());
    Object const operand = attr.valueType()->valueFromStrep(Vyx::String8(value));
    if (isNoNumber(*operand)) fail(inQuotes(value) + " is no number");
    owner->attributeOp({attr.id(), Op::write}, index, operand);
  });
}

} // namespace Pbrctl
