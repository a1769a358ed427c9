#include "pbrctl/EntityJson.h"

#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"
#include "pbrctl/Attributes.h"
#include "pbrctl/JsonReader.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace Pbrctl {

namespace {

using Json = nlohmann::json;
using Object = Vyx::Ptr<Vyx::GenericIf>;
using Vyx::GenericIf;
using Vyx::VyxAttr;
using Vyx::VyxType;

std::string nameOf(Vyx::Name const& name) { return std::string(name.view()); }

bool isNamed(std::vector<Vyx::Name> const& parameters) {
  return std::find(parameters.begin(), parameters.end(), Vyx::Name(kName)) != parameters.end();
}

template <class T> T const* heldBy(GenericIf const& value) {
  return value.type() == Vyx::typeOf<T>() ? static_cast<T const*>(value.object()) : nullptr;
}

Object read(GenericIf& object, VyxAttr const& attr) {
  return object.attributeOp({attr.id(), GenericIf::AttributeOp::read}, nullptr, nullptr);
}

template <class Visit> void eachState(GenericIf const& object, Visit visit) {
  for (VyxType::AttributeQIteratorConst at(*object.type()); at; ++at)
    if (isState(*at)) visit(*at);
}

// ORDER: by the texts of the keys, since that of a hash table's walk says nothing.
std::map<std::string, Object> membersOf(GenericIf const& object, VyxAttr const& attr) {
  std::map<std::string, Object> members;
  for (auto at = object.attributeIteratorConst(attr.id()); at; ++at)
    members[plainText(*at.key())] = at.value();
  return members;
}

class Writer {
public:
  Json document(Vyx::Entity const& root) {
    Json out = {{"version", kJsonVersion}, {"type", nameOf(root.fwkType()->fullTypeName())}};
    out["name"] = nameOf(root.name());
    out["tree"] = entity(root, "", false);
    // Writing one may mention another.
    for (std::size_t i = 0; i < mentioned_.size(); ++i) {
      Vyx::Entity const& one = *mentioned_[i];
      Json written = entity(one, "", isNamed(one.fwkType()->constructorArgNameQ()));
      written["type"] = nameOf(one.fwkType()->fullTypeName());
      out["entities"].push_back(std::move(written));
    }
    return out;
  }

private:
  // `keyName` is the attribute that the place says already; the name is only said where it must be.
  Json entity(Vyx::Entity const& of, std::string const& keyName, bool saysName) {
    Vyx::GenericIfEntity self{Vyx::Ptr<Vyx::Entity const>(&of)};
    Json out = Json::object();
    eachState(self, [&](VyxAttr const& attr) {
      std::string const name = nameOf(attr.name());
      if (name == keyName || (name == kName && !saysName)) return;
      Json value = isKeyed(attr) ? collection(self, attr) : held(attr, read(self, attr));
      if (!value.is_null()) out[name] = std::move(value);
    });
    return out;
  }

  Json collection(GenericIf const& object, VyxAttr const& attr) {
    Json out;
    for (auto const& [key, member] : membersOf(object, attr)) out[key] = held(attr, member);
    return out;
  }

  Json held(VyxAttr const& attr, Object const& what) {
    if (!what) return nullptr;
    if (isReference(attr)) return number(*static_cast<Vyx::Entity const*>(what->object()));
    if (!isOwning(attr)) return value(*what);
    std::string const keyName = attr.keyAttr() ? nameOf(attr.keyAttr()->name()) : std::string();
    return entity(*static_cast<Vyx::Entity const*>(what->object()), keyName, isNamedByValue(attr));
  }

  Json value(GenericIf& of) {
    if (auto const* const is = heldBy<bool>(of)) return *is;
    if (auto const* const number = heldBy<unsigned char>(of)) return *number;
    if (auto const* const number = heldBy<unsigned short>(of)) return *number;
    if (auto const* const number = heldBy<unsigned>(of)) return *number;
    if (auto const* const number = heldBy<unsigned long long>(of)) return *number;
    if (auto const* const number = heldBy<double>(of); number && std::isfinite(*number)) return *number;
    return hasMembers(*of.type()) ? members(of) : Json(plainText(of));
  }

  Json members(GenericIf& of) {
    Json out = Json::object();
    eachState(of, [&](VyxAttr const& attr) {
      Json written = isKeyed(attr) ? collection(of, attr) : held(attr, read(of, attr));
      if (!written.is_null()) out[nameOf(attr.name())] = std::move(written);
    });
    return out;
  }

  std::size_t number(Vyx::Entity const& of) {
    if (of.parent())
      throw Vyx::InternalException(Vyx::String8("a reference to ") + of.fullName() +
                                   Vyx::String8(" can't be said: it belongs to another tree"));
    auto const [known, isNew] = numbers_.emplace(&of, mentioned_.size() + 1);
    if (isNew) mentioned_.emplace_back(&of);
    return known->second;
  }

  std::vector<Vyx::Ptr<Vyx::Entity const>> mentioned_;
  std::map<Vyx::Entity const*, std::size_t> numbers_;
};

} // namespace

nlohmann::json entityDocument(Vyx::Entity const& root) { return Writer().document(root); }

} // namespace Pbrctl
