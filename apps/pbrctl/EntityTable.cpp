#include "pbrctl/EntityTable.h"

#include "pbrctl/Diagnostics.h"

#include <algorithm>
#include <ostream>
#include <set>

namespace Pbrctl {

namespace {

using Json = nlohmann::json;
using Row = std::vector<std::string>;

constexpr std::size_t kIndent = 2;

std::string shown(std::string const& text) { return text.empty() ? "\"\"" : escaped(text); }

std::string shown(Json const& value) {
  return value.is_string() ? shown(value.get<std::string>()) : value.dump();
}

// Columns are as wide as their widest cell.
void printRows(std::vector<Row> const& rows, std::size_t indent, std::ostream& out) {
  std::vector<std::size_t> widths;
  for (Row const& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (Row const& row : rows) {
    std::string line(indent, ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line.append(widths[i] - row[i].size() + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

bool hasOnlySingles(Json const& object) {
  return object.is_object() && !object.empty() &&
         std::none_of(object.begin(), object.end(), [](Json const& value) { return value.is_structured(); });
}

bool isTable(Json const& object) {
  return !object.empty() && std::all_of(object.begin(), object.end(), hasOnlySingles);
}

void printTable(Json const& members, std::size_t indent, std::ostream& out) {
  std::set<std::string> columns;
  for (Json const& member : members)
    for (auto const& [name, value] : member.items()) columns.insert(name);
  std::vector<Row> rows{{""}};
  rows[0].insert(rows[0].end(), columns.begin(), columns.end());
  for (auto const& [key, member] : members.items()) {
    Row row{shown(key)};
    for (std::string const& column : columns)
      row.push_back(member.contains(column) ? shown(member[column]) : "-");
    rows.push_back(std::move(row));
  }
  printRows(rows, indent, out);
}

void printObject(Json const& object, std::size_t indent, std::ostream& out) {
  if (isTable(object)) return printTable(object, indent, out);
  std::vector<Row> singles;
  for (auto const& [name, value] : object.items())
    if (!value.is_structured()) singles.push_back({shown(name), shown(value)});
  printRows(singles, indent, out);
  for (auto const& [name, value] : object.items()) {
    if (!value.is_structured()) continue;
    out << std::string(indent, ' ') << shown(name) << '\n';
    printObject(value, indent + kIndent, out);
  }
}

} // namespace

void printEntityTable(Json const& document, std::ostream& out) {
  out << shown(document["type"]) << ' ' << shown(document["name"]) << '\n';
  printObject(document["tree"], kIndent, out);
  if (!document.contains("entities")) return;
  Json numbered = Json::object();
  for (std::size_t i = 0; i < document["entities"].size(); ++i)
    numbered[std::to_string(i + 1)] = document["entities"][i];
  out << "entities\n";
  printObject(numbered, kIndent, out);
}

} // namespace Pbrctl
