#include "pbrctl/EntityDiff.h"

#include "pbrctl/Attributes.h"
#include "pbrctl/JsonReader.h"

#include <map>
#include <ostream>
#include <set>

namespace Pbrctl {

namespace {

using Json = nlohmann::json;
using Leaves = std::map<std::string, std::string>;     // By path.
using References = std::map<std::string, std::size_t>; // Numbers in `entities`, by path.

// A document as a list of its values. What a reference leads to stands in the place of the reference.
class Flattener {
public:
  explicit Flattener(Json const& document) : document_(document) {
    leaves["name"] = document["name"].dump();
    object(document["tree"], typeOf(document), "");
  }

  Leaves leaves;
  References references;

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
    if (isReference(attr)) return referred(value.get<std::size_t>(), path);
    leaves[path] = value.is_object() ? std::string() : value.dump();
    if (value.is_object()) object(value, *attr.valueType(), path);
  }

  // What refers to itself is opened once.
  void referred(std::size_t number, std::string const& path) {
    Json const& entity = document_["entities"][number - 1];
    leaves[path] = entity["type"].dump();
    references[path] = number;
    if (!open_.insert(number).second) return;
    object(entity, typeOf(entity), path);
    open_.erase(number);
  }

  Json const& document_;
  std::set<std::size_t> open_;
};

// RETURNS for each path that both have the first of those which lead to the same entity.
std::map<std::string, std::string> firstOfSame(References const& references, References const& others) {
  std::map<std::size_t, std::string> firsts;
  std::map<std::string, std::string> out;
  for (auto const& [path, number] : references)
    if (others.count(path)) out[path] = firsts.emplace(number, path).first->second;
  return out;
}

// Equal content in two places may be one entity in the one tree and two in the other.
void noteSharing(Flattener& first, Flattener& second) {
  auto const inFirst = firstOfSame(first.references, second.references);
  auto const inSecond = firstOfSame(second.references, first.references);
  auto const note = [](std::string const& path, std::string const& same, Flattener& in) {
    if (path != same) in.leaves[path] += ", the same as " + same;
  };
  for (auto const& [path, same] : inFirst) {
    note(path, same, first);
    note(path, inSecond.at(path), second);
  }
}

void printLine(char sign, std::string const& path, std::string const& value, std::ostream& out) {
  out << sign << ' ' << path << (value.empty() ? "" : " = ") << value << '\n';
}

} // namespace

std::vector<EntityDifference> diffEntities(Json const& first, Json const& second) {
  Flattener before(first);
  Flattener after(second);
  noteSharing(before, after);
  std::map<std::string, EntityDifference> differences;
  for (auto& [path, value] : before.leaves) differences[path].removed = std::move(value);
  for (auto& [path, value] : after.leaves) differences[path].added = std::move(value);
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
