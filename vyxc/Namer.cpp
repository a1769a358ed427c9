#include "Namer.h"

namespace vyxc {

namespace {

bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }

} // namespace

std::string Namer::upper(std::string name) {
  if (!name.empty() && isLower(name[0])) name[0] = static_cast<char>(name[0] - 'a' + 'A');
  return name;
}

std::string Namer::lower(std::string name) {
  if (!name.empty() && isUpper(name[0])) name[0] = static_cast<char>(name[0] - 'A' + 'a');
  return name;
}

std::string Namer::plural(std::string const& name) { return name + (name.ends_with('s') ? "es" : "s"); }

std::string Namer::folder(std::string space) {
  for (auto at = space.find("::"); at != std::string::npos; at = space.find("::")) space.replace(at, 2, "/");
  return space;
}

std::string Namer::header(std::string const& space, std::string const& type) {
  return folder(space) + "/" + type + ".h";
}

std::string Namer::source(std::string const& space, std::string const& type) {
  return folder(space) + "/" + type + ".gen.cpp";
}

std::string Namer::unitSource(std::string const& space, std::string const& unit) {
  return source(space, unit + "Unit");
}

} // namespace vyxc
