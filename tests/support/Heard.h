// Reactors that write down what they hear, so that a test compares one text.

#pragma once

#include "Vyx/Entity.h"
#include "Vyx/Strep.h"

#include <functional>
#include <string>

// What was heard, in order: "a.recursive b.recursive".
class Heard {
public:
  void note(std::string const& what) { text_ += (text_.empty() ? "" : " ") + what; }
  // RETURNS what was heard since the last call.
  std::string take() { return std::exchange(text_, {}); }

private:
  std::string text_;
};

// A reactor on an X; a class for a type adds the type's own entries. A named one puts its name before what it
// hears. An exception that comes back is noted as "!388".
template <class X> class Recorder : public X::Notifiee {
public:
  explicit Recorder(Heard& heard, std::string name = {}) : heard_(heard), name_(std::move(name)) {}

  std::function<void()> during;         // Runs in each entry, after the note.
  std::function<void()> afterException; // Runs in onNotificationException.

  using X::Notifiee::onNotificationException;
  void onNotificationException(Vyx::AttributeId id) override {
    note("!" + std::to_string(id));
    if (afterException) afterException();
  }
  void onZeroReferences() override { hear("zeroReferences"); }
  void onIsNondestructing() override { hear("isNondestructing"); }

protected:
  void hear(std::string const& what) {
    note(what);
    if (during) during();
  }
  // An entry with a key: "nexthop 10.0.0.1".
  template <class K> void hear(char const* what, K const& key) {
    using Vyx::valueToStrep;
    hear(std::string(what) + " " + std::string(Vyx::String8(valueToStrep(key)).view()));
  }

private:
  void note(std::string const& what) { heard_.note(name_.empty() ? what : name_ + "." + what); }

  Heard& heard_;
  std::string name_;
};

// Registers a reactor on an entity.
template <class R, class X> Vyx::Ptr<R> const& attach(Vyx::Ptr<R> const& reactor, X const& to) {
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(to);
  return reactor;
}

// Makes a reactor and registers it on an entity.
template <class R, class X, class... Arguments> Vyx::Ptr<R> listen(X const& to, Arguments&&... arguments) {
  return attach(Vyx::ptrFromNew(new R(std::forward<Arguments>(arguments)...)), to);
}
