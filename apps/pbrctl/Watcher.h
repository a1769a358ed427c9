// What the reactors of all types share: telling a change with its path, and keeping the reactors of children
// in step with the children.

#pragma once

#include "pbrctl/TreeWatch.h"

#include <map>

namespace Pbrctl {

template <class T> std::string textOf(T const& value) { return std::string(valueToStrep(value).view()); }
inline std::string textOf(bool value) { return value ? "true" : "false"; }
inline std::string textOf(std::uint32_t value) { return std::to_string(value); }
inline std::string textOf(PolicyMap::ActionType value) { return std::string(stringValue(value).view()); }
inline std::string textOf(Vyx::Name const& value) { return std::string(value.view()); }
inline std::string textOf(Lomu::IntfId const& value) { return std::string(value.stringValue().view()); }

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
  std::string below(char const* attribute) const {
    return path_.empty() ? attribute : path_ + "." + attribute;
  }
  template <class K> std::string below(char const* attribute, K const& key) const {
    return below(attribute) + "[" + textOf(key) + "]";
  }

  template <class T> void valueIs(char const* attribute, T const& value) {
    tell(below(attribute), textOf(value));
  }
  void tell(std::string path, std::string value) const {
    sink_({Change::Kind::set, std::move(path), std::move(value), about()});
  }
  void gone(std::string path) const { sink_({Change::Kind::removed, std::move(path), {}, about()}); }
  // What the path's identifiers stand for.
  virtual std::string about() const { return {}; }

  // A keyed value came, changed or went.
  template <class K, class V>
  void memberIs(char const* attribute, K const& key, bool there, V const& value) const {
    if (there)
      tell(below(attribute, key), textOf(value));
    else
      gone(below(attribute, key));
  }

  // A keyed child came or went. Its reactor goes with it.
  template <class ChildWatcher, class K, class Child>
  void childIs(char const* attribute, K const& key, Vyx::Ptr<Child> const& child) {
    cameOrWent<ChildWatcher>(below(attribute, key), child);
  }
  // The only child of an attribute was replaced or went.
  template <class ChildWatcher, class Child>
  void onlyChildIs(char const* attribute, Vyx::Ptr<Child> const& child) {
    cameOrWent<ChildWatcher>(below(attribute), child);
  }
  // Puts a reactor on a child that is there.
  template <class ChildWatcher, class Child> void follow(std::string const& path, Child const& child) {
    auto reactor = Vyx::ptrFromNew(new ChildWatcher(sink_, path));
    children_[path] = {reactor, aboutChild(child)};
    reactor->watchTree(child);
  }

private:
  struct Followed {
    Vyx::Ptr<Vyx::PtrInterface> reactor;
    std::string about;
  };

  template <class ChildWatcher, class Child>
  void cameOrWent(std::string const& path, Vyx::Ptr<Child> const& child) {
    std::string about = child ? aboutChild(*child) : children_[path].about;
    children_.erase(path);
    sink_({child ? Change::Kind::added : Change::Kind::removed, path, {}, std::move(about)});
    if (child) follow<ChildWatcher>(path, *child);
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

} // namespace Pbrctl
