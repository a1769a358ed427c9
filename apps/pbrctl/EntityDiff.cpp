#include "pbrctl/EntityDiff.h"

#include "pbrctl/Attributes.h"
#include "pbrctl/JsonReader.h"

#include <map>
#include <ostream>

namespace Pbrctl {

namespace {

using Json = nlohmann::json;
using Leaves = std::map<std::string, std::string>; // By path.

class Flattener {
public:
  Leaves take() { return std::move(leaves_); }

  void document(Json const& document) {
    leaves_["name"] = document["name"].dump();
    object(document["tree"], typeOf(document), "");
    if (!document.contains("entities")) return;
    std::size_t number = 0;
    for (Json const& entity : document["entities"]) {
      std::string const path = "entities[" + std::to_string(++number) + "]";
      leaves_[path] = entity["type"].dump();
      object(entity, typeOf(entity), path);
    }
  }

private:
  static Vyx::VyxType const& typeOf(Json const& of) {
    return *Vyx::VyxType::typeByName(Vyx::Name(of["type"].get<std::string>()));
  }

  void object(Json const& object, Vyx::VyxType const& type, std::string const& path) {
    for (auto const& [name, value] : object.items()) {
      Vyx::VyxAttr const* const attr = type.attr(Vyx::Name(name));
      if (!attr) continue; // The type of an entity.
      std::string const place = path.empty() ? name : path + "." + name;
      if (!isKeyed(*attr)) {
        held(value, *attr, place);
        continue;
      }
      for (auto const& [key, member] : value.items()) held(member, *attr, place + "[" + key + "]");
    }
  }

  void held(Json const& value, Vyx::VyxAttr const& attr, std::string const& path) {
    leaves_[path] = value.is_object() ? std::string() : value.dump();
    if (value.is_object()) object(value, *attr.valueType(), path);
  }

  Leaves leaves_;
};

Leaves leavesOf(Json const& document) {
  Flattener flattener;
  flattener.document(document);
  return flattener.take();
}

void printLine(char sign, std::string const& path, std::string const& value, std::ostream& out) {
  out << sign << ' ' << path << (value.empty() ? "" : " = ") << value << '\n';
}

} // namespace

std::vector<EntityDifference> diffEntities(Json const& first, Json const& second) {
  std::map<std::string, EntityDifference> differences;
  for (auto& [path, value] : leavesOf(first)) differences[path].removed = value;
  for (auto& [path, value] : leavesOf(second)) differences[path].added = value;
  std::vector<EntityDifference> out;
  for (auto& [path, difference] : differences)
    if (difference.removed != difference.added)
      out.push_back({path, std::move(difference.removed), std::move(difference.added)});
  return out;
}

void printEntityDiff(std::vector<EntityDifference> const& differences, std::ostream& out) {
  for (EntityDifference const& d : differences) {
    if (d.removed) printLine('-', d.path, *d.removed, out);
    if (d.added) printLine('+', d.path, *d.added, out);
  }
}

Json entityDiffJson(std::vector<EntityDifference> const& differences) {
  Json out = {{"version", kJsonVersion}, {"equal", differences.empty()}};
  Json& list = out["differences"] = Json::array();
  for (EntityDifference const& d : differences) {
    Json entry = {{"path", d.path}};
    if (d.removed) entry["removed"] = *d.removed;
    if (d.added) entry["added"] = *d.added;
    list.push_back(std::move(entry));
  }
  return out;
}

} // namespace Pbrctl
