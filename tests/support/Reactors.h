// A reactor that does what the test tells it, and tells the test what it heard.

#pragma once

#include "Vyx/ListRaw.h"
#include "Vyx/SnapshotIterator.h"

#include <functional>
#include <string>

class Listener;
using Listeners = Vyx::ListRaw<Listener>;

// Leaves its list when it ends, as every reactor does.
class Listener final : public Vyx::Entity::Notifiee {
public:
  explicit Listener(std::string id, std::string* heard = nullptr) : id(std::move(id)), heard_(heard) {}
  ~Listener() override {
    unlink();
    if (heard_) *heard_ += "~" + id + " ";
  }

  void linkTo(Listeners& list) {
    list_ = &list;
    list.linkTail(this);
  }
  void unlink() {
    if (list_) list_->unlink(this);
    list_ = nullptr;
  }
  // The list has ended, or forgotten its members.
  void listIsGone() { list_ = nullptr; }
  bool linked() const { return list_ != nullptr; }

  void call() {
    if (heard_) *heard_ += id + " ";
    if (entry) entry(*this);
  }

  std::string const id;
  std::function<void(Listener&)> entry;

private:
  std::string* heard_;
  Listeners* list_ = nullptr;
};

// The ids in the list, from head to tail.
inline std::string idsOf(Listeners const& list) {
  std::string ids;
  for (Listeners::LrIteratorConst at(list); at; ++at) ids += at->id + " ";
  return ids;
}

// One round, as a setter runs it.
inline void runLazyRound(Listeners const& list) {
  for (Vyx::SnapshotIterator<Listeners> at(list); Listener* listener = at.current(); at.advance())
    listener->call();
}
