#include "pbrctl/EntityReader.h"

#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"
#include "pbrctl/Attributes.h"
#include "pbrctl/JsonCursor.h"
#include "pbrctl/JsonReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Pbrctl {

namespace {

using Object = Vyx::Ptr<Vyx::GenericIf>;
using Vyx::GenericIf;
using Vyx::VyxAttr;
using Vyx::VyxType;
using Kind = JsonValue::Kind;
using List = GenericIf::List_;

std::string textOf(Vyx::Name const& name) { return std::string(name.view()); }

bool isName(VyxType const& type) { return &type == Vyx::typeOf<Vyx::Name>(); }

class Reader {
public:
  Vyx::Ptr<Vyx::Entity> document(JsonCursor const& at, VyxType const& type) {
    JsonObject object(at);
    if (auto const version = object.required("version"))
      if (auto const number = version->number(); number && *number != kJsonVersion)
        version->error("the version is " + std::to_string(*number) + "; this tool reads " +
                       std::to_string(kJsonVersion));
    if (auto const given = object.required("type")) typeIs(*given, type);
    if (auto const list = object.member("entities")) entities(*list);
    auto const name = object.required("name");
    auto const tree = object.required("tree");
    object.refuseOthers();
    if (!name || !tree || !tree->is(Kind::object)) return nullptr;
    auto const text = name->name();
    if (!text) return nullptr;
    auto const root = made(*tree, type, {*text, "", nullptr});
    if (root) fill(*tree, root, {*text, "", nullptr});
    return root;
  }

private:
  using Entity = Vyx::Ptr<Vyx::Entity>;

  // What an entity's place says of it.
  struct Given {
    std::string name;    // Empty when a member says it, or nothing has to.
    std::string keyName; // The attribute that `key` stands for.
    Object key;          // Null for what has no key.
  };

  void typeIs(JsonCursor const& at, VyxType const& wanted) {
    auto const text = at.text();
    if (text && *text != textOf(wanted.fullTypeName()))
      at.error("a " + textOf(wanted.fullTypeName()) + " belongs here, not a " + inQuotes(*text));
  }

  // Each is made and filled before anything refers to it.
  void entities(JsonCursor const& list) {
    for (JsonCursor const& item : list.items()) {
      entities_.push_back(nullptr);
      JsonObject object(item);
      auto const name = object.required("type");
      auto const text = name ? name->text() : std::nullopt;
      if (!text) continue;
      VyxType const* const type = VyxType::typeByName(Vyx::Name(*text));
      if (!type || !type->isEntity()) {
        name->error(inQuotes(*text) + " is no type of entity");
        continue;
      }
      entities_.back() = made(item, *type, {});
      if (entities_.back()) fill(item, entities_.back(), {}, "type");
    }
  }

  // THROWS nothing: what the model refuses is told at the place.
  template <class Act> auto telling(JsonCursor const& at, Act act) -> decltype(act()) {
    try {
      return act();
    } catch (Vyx::Exception const& e) {
      at.error(e.what());
    } catch (FieldError const& e) {
      at.error(e.text);
    }
    return {};
  }

  // An entity with its constructor's values: what is given, and members of the object.
  Entity made(JsonCursor const& at, VyxType const& type, Given const& given) {
    auto const list = arguments(at, type, given);
    if (!list) return nullptr;
    return telling(at, [&]() -> Entity {
      Object const instance = type.newInstance(list);
      return Entity(static_cast<Vyx::Entity*>(instance->object()));
    });
  }

  // RETURNS null when one is missing or wrong.
  Vyx::Ptr<List> arguments(JsonCursor const& at, VyxType const& type, Given const& given) {
    auto const list = Vyx::ptrFromNew(new List);
    JsonObject object(at);
    auto const& names = type.constructorArgNameQ();
    for (std::size_t i = 0; i < names.size(); ++i) {
      Object const value = argument(object, type, textOf(names[i]), type.constructorArgTypeQ()[i], given);
      if (!value) return nullptr;
      list->argumentIs(names[i], value);
    }
    return list;
  }

  Object argument(JsonObject& object, VyxType const& type, std::string const& name, Vyx::Name const& typeName,
                  Given const& given) {
    if (given.key && name == given.keyName) return given.key;
    if (name == kName && !given.name.empty()) return Vyx::wrap(Vyx::Name(given.name));
    VyxAttr const* const attr = type.attr(Vyx::Name(name));
    // What isn't part of the state follows from the rest, whatever is given for it.
    if (!attr || !isState(*attr)) return VyxType::typeByName(typeName)->valueFromStrep("0");
    auto const member = object.required(name.c_str());
    return member ? read(*member, *attr->valueType()) : nullptr;
  }

  // All members but those that the constructor has taken. What is given is refused: it would be said twice.
  void fill(JsonCursor const& at, Entity const& entity, Given const& given, std::string const& besides = {}) {
    Vyx::GenericIfEntity self(entity);
    fillObject(at, self, given, besides);
  }

  void fillObject(JsonCursor const& at, GenericIf& self, Given const& given, std::string const& besides) {
    VyxType const& type = *self.type();
    for (JsonValue::Member const& member : at.value().members) {
      if (member.name == besides) continue;
      JsonCursor const value = at.below(member);
      VyxAttr const* const attr = type.attr(Vyx::Name(member.name));
      if (!attr || !isState(*attr))
        value.error(textOf(type.fullTypeName()) + " has no attribute " + inQuotes(member.name));
      else if (member.name == given.keyName)
        value.error("the key says this already");
      else if (isKeyed(*attr))
        collection(value, self, *attr);
      else if (isOwning(*attr))
        child(value, self, *attr, "", nullptr);
      else if (!isFixed(*attr))
        single(value, self, *attr);
      else if (!isTaken(type, attr->name(), given))
        value.error("this follows from something else, and isn't said");
    }
  }

  // Whether the constructor has taken the member of that name.
  static bool isTaken(VyxType const& type, Vyx::Name const& name, Given const& given) {
    auto const& names = type.constructorArgNameQ();
    bool const isParameter = std::find(names.begin(), names.end(), name) != names.end();
    return isParameter && !(name == Vyx::Name(kName) && !given.name.empty());
  }

  void single(JsonCursor const& at, GenericIf& self, VyxAttr const& attr) {
    Object const value = isReference(attr) ? referred(at, attr) : read(at, *attr.valueType());
    if (value) write(at, self, attr, nullptr, value);
  }

  void collection(JsonCursor const& at, GenericIf& self, VyxAttr const& attr) {
    if (!at.is(Kind::object)) return;
    for (JsonValue::Member const& member : at.value().members) {
      JsonCursor const value = at.below(member);
      Object const key = keyOf(value, member.name, keyTypeOf(attr));
      if (!key) continue;
      if (isOwning(attr)) {
        child(value, self, attr, member.name, key);
      } else if (Object const held =
                     isReference(attr) ? referred(value, attr) : read(value, *attr.valueType())) {
        write(value, self, attr, key, held);
      }
    }
  }

  Object keyOf(JsonCursor const& at, std::string const& text, VyxType const& type) {
    if (isName(type))
      if (auto const problem = nameProblem(text)) return at.error(*problem), nullptr;
    return telling(at, [&] { return type.valueFromStrep(Vyx::String8(text)); });
  }

  void child(JsonCursor const& at, GenericIf& self, VyxAttr const& attr, std::string const& keyText,
             Object const& key) {
    if (!at.is(Kind::object)) return;
    Given given;
    if (key) given = {isNamedByValue(attr) ? "" : keyText, textOf(attr.keyAttr()->name()), key};
    Entity const model = made(at, *attr.valueType(), given);
    if (!model) return;
    auto& owner = *static_cast<Vyx::Entity*>(self.object());
    Entity const entity = telling(at, [&] { return attr.ops()->childLike(owner, *model); });
    if (entity) fill(at, entity, given);
  }

  void write(JsonCursor const& at, GenericIf& self, VyxAttr const& attr, Object const& key,
             Object const& value) {
    telling(at, [&] { return self.attributeOp({attr.id(), GenericIf::AttributeOp::write}, key, value); });
  }

  // The entity that a number stands for.
  Object referred(JsonCursor const& at, VyxAttr const& attr) {
    auto const number = at.number();
    if (!number) return nullptr;
    if (*number == 0 || *number > entities_.size()) {
      at.error("there is no entity " + std::to_string(*number) + " in 'entities'");
      return nullptr;
    }
    Entity const& entity = entities_[*number - 1];
    if (!entity) return nullptr; // Its error was told where it stands.
    if (!entity->fwkType()->isA(attr.valueType())) {
      at.error("a " + textOf(attr.valueType()->fullTypeName()) + " belongs here; entity " +
               std::to_string(*number) + " is a " + textOf(entity->fwkType()->fullTypeName()));
      return nullptr;
    }
    return entity->fwkType()->genericIf(entity);
  }

  Object read(JsonCursor const& at, VyxType const& type) {
    if (hasMembers(type)) return withMembers(at, type);
    if (&type == Vyx::typeOf<bool>()) {
      auto const value = at.boolean();
      return value ? Vyx::wrap(*value) : nullptr;
    }
    if (&type == Vyx::typeOf<double>()) return number(at);
    std::string text = at.value().text;
    if (isUnsigned(type)) {
      if (!at.is(Kind::number)) return nullptr;
      text = std::to_string(at.value().number);
    } else if (!at.is(Kind::text)) {
      return nullptr;
    }
    return telling(at, [&] { return type.valueFromStrep(Vyx::String8(text)); });
  }

  static bool isUnsigned(VyxType const& type) {
    return &type == Vyx::typeOf<unsigned char>() || &type == Vyx::typeOf<unsigned short>() ||
           &type == Vyx::typeOf<unsigned>() || &type == Vyx::typeOf<unsigned long long>();
  }

  // JSON has no infinite number and none that is no number.
  Object number(JsonCursor const& at) {
    JsonValue const& value = at.value();
    if (value.kind == Kind::number) return Vyx::wrap(static_cast<double>(value.number));
    if (value.kind != Kind::fraction) {
      at.error("a number belongs here, not " +
               (value.kind == Kind::text ? inQuotes(value.text) : std::string(kindName(value.kind))));
      return nullptr;
    }
    double number = 0;
    auto const [end, error] =
        std::from_chars(value.text.data(), value.text.data() + value.text.size(), number);
    if (error == std::errc() && end == value.text.data() + value.text.size() && std::isfinite(number))
      return Vyx::wrap(number);
    at.error("the number " + inQuotes(value.text) + " is too large or too small");
    return nullptr;
  }

  Object withMembers(JsonCursor const& at, VyxType const& type) {
    if (!at.is(Kind::object)) return nullptr;
    auto const list = arguments(at, type, {});
    if (!list) return nullptr;
    Object const value = telling(at, [&] { return type.newInstance(list); });
    if (value) fillObject(at, *value, {}, "");
    return value;
  }

  std::vector<Entity> entities_;
};

} // namespace

Vyx::Ptr<Vyx::Entity> readEntityDocument(SourceText const& source, VyxType const& type,
                                         Diagnostics& diagnostics) {
  auto const json = readJson(source, diagnostics);
  if (!json) return nullptr;
  auto const root = Reader().document(JsonCursor(*json, "", source, diagnostics), type);
  return diagnostics.ok() ? root : nullptr;
}

} // namespace Pbrctl
