// What the reactors of all types share: telling a change with its path, and keeping the reactors of children
// in step with the children.

#pragma once

#include "pbrctl/RootWatches.h"

#include <map>

namespace Pbrctl {

template <class T> std::string textOf(T const& value) {
  using Vyx::valueToStrep;
  if constexpr (std::is_enum_v<T>)
    return std::string(Vyx::String8(stringValue(value)).view());
  else
    return std::string(Vyx::String8(valueToStrep(value)).view());
}
inline std::string textOf(bool value) { return value ? "true" : "false"; }
inline std::string textOf(Vyx::Name const& value) { return std::string(value.view()); }
inline std::string textOf(Vyx::String8 const& value) { return std::string(value.view()); }
inline std::string textOf(Lomu::IntfId const& value) { return std::string(value.stringValue().view()); }
inline std::string textOf(std::string const& value) { return value; }

// A reactor on an X at a known path. Derived classes override the entries of X's attributes.
template <class X> class Watcher : public X::Notifiee {
public:
  Watcher(ChangeSink const& sink, std::string path) : sink_(sink), path_(std::move(path)) {}

  // Begins to hear; a derived class adds the reactors of the children that are there.
  void watch(X const& on) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(&on));
  }

protected:
  // What the path's identifiers stand for.
  virtual std::string about() const { return {}; }

  template <class T> void valueIs(char const* attribute, T const& value) const {
    sink_({Change::Kind::set, path_, attribute, {}, textOf(value), about()});
  }
  template <class K, class V> void valueIs(char const* attribute, K const& key, V const& value) const {
    sink_({Change::Kind::set, path_, attribute, textOf(key), textOf(value), about()});
  }
  template <class K> void gone(char const* attribute, K const& key) const {
    sink_({Change::Kind::removed, path_, attribute, textOf(key), {}, about()});
  }

  // A keyed value came, changed or went.
  template <class K, class V>
  void memberIs(char const* attribute, K const& key, bool there, V const& value) const {
    if (there)
      valueIs(attribute, key, value);
    else
      gone(attribute, key);
  }

  // A keyed child came or went. Its reactor goes with it.
  template <class ChildWatcher, class K, class Child>
  void childIs(char const* attribute, K const& key, Vyx::Ptr<Child> const& child) {
    cameOrWent<ChildWatcher>({Change::Kind::added, path_, attribute, textOf(key), {}, {}}, child);
  }
  // The only child of an attribute was replaced or went.
  template <class ChildWatcher, class Child>
  void onlyChildIs(char const* attribute, Vyx::Ptr<Child> const& child) {
    cameOrWent<ChildWatcher>({Change::Kind::added, path_, attribute, {}, {}, {}}, child);
  }
  // Puts a reactor on a child that is there.
  template <class ChildWatcher, class Child> ChildWatcher& follow(char const* attribute, Child const& child) {
    return follow<ChildWatcher>(Change{Change::Kind::added, path_, attribute, {}, {}, {}}, child);
  }
  // Puts a reactor on every child of a collection.
  template <class ChildWatcher, class Iterator> void followAll(char const* attribute, Iterator at) {
    for (; at; ++at)
      follow<ChildWatcher>(Change{Change::Kind::added, path_, attribute, textOf(at.key()), {}, {}}, *at);
  }
  void unfollow(char const* attribute) {
    children_.erase(Change{Change::Kind::removed, path_, attribute, {}, {}, {}}.path());
  }

private:
  struct Followed {
    Reactor reactor;
    std::string about;
  };

  template <class ChildWatcher, class Child> ChildWatcher& follow(Change const& place, Child const& child) {
    std::string const path = place.path();
    auto reactor = Vyx::ptrFromNew(new ChildWatcher(sink_, path));
    children_[path] = {reactor, aboutChild(child)};
    reactor->watchTree(child);
    return *reactor;
  }

  template <class ChildWatcher, class Child> void cameOrWent(Change change, Vyx::Ptr<Child> const& child) {
    std::string const path = change.path();
    change.kind = child ? Change::Kind::added : Change::Kind::removed;
    change.about = child ? aboutChild(*child) : children_[path].about;
    children_.erase(path);
    sink_(change);
    if (child) follow<ChildWatcher>(change, *child);
  }

  template <class Child> static std::string aboutChild(Child const& child) {
    if constexpr (requires { child.className(); })
      return "class " + textOf(child.className());
    else
      return {};
  }

  ChangeSink const& sink_;
  std::string path_;
  std::map<std::string, Followed> children_; // By path.
};

template <class RootWatcher, class Root>
Reactor watchRoot(Root const& root, ChangeSink const& sink, std::string path) {
  auto const reactor = Vyx::ptrFromNew(new RootWatcher(sink, std::move(path)));
  reactor->watchTree(root);
  return reactor;
}

} // namespace Pbrctl
