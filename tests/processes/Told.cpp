#include "Told.h"

namespace processes_test {

using Pbrctl::Change;

namespace {

constexpr char kNexthops[] = "nexthopIndexAndL2AdjKey";

bool isDefault(std::string const& value) {
  return value.empty() || value == "false" || value == "0" || value == "none";
}

} // namespace

void Told::watch(Vyx::Ptr<Vyx::Entity> const& root, std::string const& path) {
  Watched& watched = watched_[path];
  if (watched.root == root) return;
  watched.watch = std::make_unique<Pbrctl::TreeWatch>(
      root, [this](Change const& change) { apply(change); }, path);
  watched.root = root;
}

std::string Told::text() const {
  std::string text;
  for (auto const& [path, value] : state_)
    if (path.back() == ']' || !isDefault(value)) text += path + " = " + value + "\n";
  return text;
}

unsigned Told::changesOf(std::string const& attribute) const {
  auto const found = attributes_.find(attribute);
  return found == attributes_.end() ? 0 : found->second;
}

void Told::apply(Change const& change) {
  ++changes_;
  ++attributes_[change.attribute];
  std::string const path = change.path();
  switch (change.kind) {
  case Change::Kind::added:
    expect(state_.emplace(path, "there").second, change);
    return;
  case Change::Kind::removed:
    expect(state_.erase(path) == 1, change);
    return dropBelow(path);
  case Change::Kind::set:
    return setTo(change);
  }
}

// What a class map refers to is told as a whole whenever it refers to another.
void Told::setTo(Change const& change) {
  std::string const path = change.path();
  bool const isTold = path.find(kNexthops) != std::string::npos;
  auto const found = state_.find(path);
  if (found == state_.end())
    expect(change.key || isTold || !isDefault(change.value), change);
  else
    expect(found->second != change.value, change);
  if (change.attribute == kNexthops) dropBelow(path);
  state_[path] = change.value;
}

void Told::dropBelow(std::string const& path) {
  std::string const first = path + ".";
  auto const begin = state_.lower_bound(first);
  auto end = begin;
  while (end != state_.end() && end->first.compare(0, first.size(), first) == 0) ++end;
  state_.erase(begin, end);
}

void Told::expect(bool isRight, Change const& change) {
  if (!isRight)
    wrong_ += std::string(kindName(change.kind)) + " " + change.path() + " = " + change.value + "\n";
}

} // namespace processes_test
