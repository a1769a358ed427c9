#include "MemberChecker.h"

#include <set>

namespace vyxc {

using ast::MemberKind;

namespace {

// What an id of a value may be; those of an entity have a block of their own.
constexpr std::uint32_t kLastOfValue = kBlockSize - 1;

AttributeKind attributeKind(MemberKind kind) {
  switch (kind) {
  case MemberKind::kConst:
    return AttributeKind::kConst;
  case MemberKind::kComputed:
    return AttributeKind::kComputed;
  case MemberKind::kConstant:
    return AttributeKind::kConstant;
  case MemberKind::kCollection:
    return AttributeKind::kCollection;
  default:
    return AttributeKind::kMember;
  }
}

bool isInteger(Type const& type) { return type.kind == TypeKind::kBuiltin && type.name.starts_with('U'); }

} // namespace

std::uint32_t AttributeNumbers::assign(ast::Member const& member) {
  auto const id = member.id ? member.id->value : next_++;
  auto const at = member.id ? member.id->span : member.name.span;
  if (id < first_ || id > last_) {
    diagnostics_.error(at, "id " + std::to_string(id) + " is outside the block of this type, " +
                               std::to_string(first_) + " to " + std::to_string(last_));
    return first_;
  }
  auto const [used, isNew] = used_.try_emplace(id, member.name.span);
  if (!isNew) {
    diagnostics_.error(at, "duplicate id " + std::to_string(id));
    diagnostics_.note(used->second, "used here before");
  }
  return static_cast<std::uint32_t>(id);
}

void ValueChecker::shape() {
  bool hasConstructor = false;
  bool hasOperators = false;
  for (auto const& member : decl_.members) {
    if (member.kind == MemberKind::kConstructor) {
      if (hasConstructor) resolver_.diagnostics().error(member.keyword, "a second constructor");
      hasConstructor = true;
      type_.parameters = resolver_.parameters(member.parameters, Use::kValue);
    } else if (member.kind == MemberKind::kOperators) {
      if (hasOperators) resolver_.diagnostics().error(member.keyword, "a second `operators`");
      hasOperators = true;
      type_.operators = member.allOperators ? Operators::kAll : Operators::kNot;
    }
  }
  if (!hasConstructor) {
    resolver_.diagnostics().error(decl_.name.span, "missing constructor in `" + decl_.name.text + "`");
  }
}

void ValueChecker::attributes() {
  AttributeNumbers numbers(kFirstInBlock, kLastOfValue, resolver_.diagnostics());
  std::map<std::string, Span> own;
  for (auto const& member : decl_.members) {
    if (member.kind == MemberKind::kConstructor || member.kind == MemberKind::kOperators) continue;
    auto const [seen, isNew] = own.try_emplace(member.name.text, member.name.span);
    if (!isNew) {
      resolver_.diagnostics().error(member.name.span, "duplicate attribute `" + member.name.text + "`");
      resolver_.diagnostics().note(seen->second, "declared here before");
    } else if (resolver_.usableName(member.name)) {
      addAttribute(member, numbers);
    }
  }
}

void ValueChecker::addAttribute(ast::Member const& member, AttributeNumbers& numbers) {
  Attribute attribute{};
  attribute.kind = attributeKind(member.kind);
  attribute.name = member.name.text;
  attribute.doc = member.doc;
  attribute.span = member.name.span;
  attribute.id = numbers.assign(member);
  attribute.type = resolver_.type(member.type.name, Use::kValue);
  attribute.isTree = member.isTree;
  if (member.kind == MemberKind::kCollection)
    attribute.keyType = resolver_.type(member.keyType.name, Use::kValue);
  if (member.kind == MemberKind::kConstant && attribute.type) {
    if (isInteger(*attribute.type)) {
      attribute.initial = resolver_.expression(*member.initial, attribute.type, {});
    } else {
      resolver_.diagnostics().error(member.type.name.span, "a constant is U8, U16, U32 or U64");
    }
  }
  type_.attributes.push_back(std::move(attribute));
}

} // namespace vyxc
