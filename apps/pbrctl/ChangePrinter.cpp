#include "pbrctl/ChangePrinter.h"

#include "pbrctl/Diagnostics.h"

#include <ostream>

namespace Pbrctl {

void printChange(Change const& change, std::ostream& out) {
  std::string const kind = kindName(change.kind);
  out << kind << std::string(9 - kind.size(), ' ') << escaped(change.path());
  if (change.kind == Change::Kind::set) out << " = " << escaped(change.value);
  if (!change.about.empty()) out << "   (" << escaped(change.about) << ")";
  out << '\n';
}

nlohmann::json changesJson(std::vector<Change> const& changes) {
  nlohmann::json list = nlohmann::json::array();
  for (Change const& change : changes) {
    nlohmann::json entry = {{"change", kindName(change.kind)}, {"path", change.path()}};
    if (change.kind == Change::Kind::set) entry["value"] = change.value;
    list.push_back(std::move(entry));
  }
  return list;
}

} // namespace Pbrctl
