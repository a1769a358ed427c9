// Attributes whose values are entities of their own: the child gets an adapter on the same log, and the
// parent announces it.

#pragma once

#include "replication/Reactions.h"

namespace replication {

// The adapter of a child on its parent's log, null when it has none. What a child's type is unable to be
// cast to is none.
template <class Child>
Vyx::Ptr<typename Child::VyxNboAttrLogSa> adapterOf(Child& child, Vyx::Ptr<Out> const& out) {
  Vyx::Entity& entity = child;
  return frame::linePtrCast<typename Child::VyxNboAttrLogSa>(
      entity.vyxNboAttrLogSa(Vyx::Ptr<Out const>(out)));
}

// Finds or makes the child's adapter and announces the child, unless that has been done.
template <class Attr, class Sa>
Vyx::Ptr<typename Attr::ChildType::VyxNboAttrLogSa>
childAdapterIs(Sa& parent, Vyx_BitSet flags, Vyx::Ptr<typename Attr::ChildType> const& child,
               unsigned options, Vyx::Ptr<Out> const&, Vyx::PtrInterface* channelEntry) {
  using ChildSa = typename Attr::ChildType::VyxNboAttrLogSa;
  auto const& out = parent.nboAttrLogOut();
  Vyx::Ptr<ChildSa> adapter = adapterOf(*child, out);
  if (adapter) {
    adapter->notificationFlagsAre(flags);
    if (adapter->flag(StreamAdapter::childAnnouncedFlag)) return adapter;
    adapter->vyxReveal();
  } else {
    adapter = ChildSa::VyxNboAttrLogSaIs(flags, child, options, out, channelEntry);
    adapter->vyxOnInit();
  }
  parent.vyxTellHeard();
  writeAnnouncement<Attr>(parent, *child, adapter->entityId());
  return Vyx::validPtr(std::move(adapter));
}

// A child that this side makes while the other one walks the collection gets an adapter that writes nothing
// yet: so the walk's end sees that the child isn't one that the other side has deleted.
template <class Attr, class Sa> void keepBack(Sa& parent, Vyx::Ptr<typename Attr::ChildType> const& child) {
  using ChildSa = typename Attr::ChildType::VyxNboAttrLogSa;
  if (adapterOf(*child, parent.nboAttrLogOut())) return;
  Vyx_BitSet flags;
  flags.masked(parent.vyx_bitSet(), Vyx_BitSet::notificationBitMask());
  flags.bitIs(StreamAdapter::flowOutOffFlag, true);
  ChildSa::VyxNboAttrLogSaIs(flags, child, 1, parent.nboAttrLogOut(), parent.messageChannelEntry())
      ->vyxOnInit();
}

// Takes the child, with everything below it, off its parent's log. RETURNS its adapter, or null.
template <class Sa, class Child>
Vyx::Ptr<typename Child::VyxNboAttrLogSa> childAdapterDel(Sa& parent, Vyx::Ptr<Child> const& child) {
  if (!child) return {};
  auto adapter = adapterOf(*child, parent.nboAttrLogOut());
  if (adapter) adapter->doRemountSelf(nullptr);
  return adapter;
}

// In a walk the child's own content follows at once.
template <class Attr, class Sa>
void announceChild(Sa& parent, Vyx::Ptr<typename Attr::ChildType> const& child) {
  Vyx_BitSet flags;
  flags.masked(parent.vyx_bitSet(), Vyx_BitSet::notificationBitMask());
  auto const adapter = [&] {
    Vyx::Expect const expect(Vyx::kAttrLogRecord);
    return childAdapterIs<Attr>(parent, flags, child, 1, parent.nboAttrLogOut(),
                                parent.messageChannelEntry());
  }();
  parent.doFixChildFlags(adapter);
  if (parent.syncMode() == StreamAdapter::syncModeFull ||
      parent.flag(StreamAdapter::handlingScheduledFlowOutFlag))
    adapter->doThis();
}

// The other side may be making a child anew in that place; it is told from the one that is meant here.
template <class Attr, class Sa, class... Key> void removeChild(Sa& parent, Key const&... key) {
  parent.vyxTellHeard();
  writeRemoval<Attr>(parent, key...);
}

// The reaction of both forms; a keyed one comes with its key. While a message is being applied the child
// takes the id that stands next in it.
template <class Attr, class Sa, class... Key>
void childChanged(Sa& parent, Vyx::Ptr<typename Attr::ChildType> const& child, Key const&... key) {
  if (isEcho(parent, Attr::id)) {
    bool const isOwn = deferOwnChange<Attr>(parent);
    if (sizeof...(Key) != 0 && isOwn && child) keepBack<Attr>(parent, child);
    return;
  }
  Vyx::ClearIsActiveAnchor const anchor(parent);
  if (parent.flag(StreamAdapter::isActiveFlag)) {
    if (child) parent.adoptChild(*child);
    return;
  }
  if (!mayReact<Attr>(parent)) return;
  if (child)
    writePatiently<Attr>(parent, [&] { announceChild<Attr>(parent, child); });
  else
    removeChild<Attr>(parent, key...);
}

template <class Attr, class Sa> void childChanged(Sa& parent) {
  Vyx::Ptr<typename Attr::ChildType> const child = Attr::field(entityOf(parent));
  childChanged<Attr>(parent, child);
}

template <class Attr, class Sa> void keyedChildChanged(Sa& parent, typename Attr::Key const& key) {
  Vyx::Ptr<typename Attr::ChildType> const child(Attr::field(entityOf(parent)).find(key));
  childChanged<Attr>(parent, child, key);
}

// Calls `each` with every child of the entity under that attribute, and anew with all of them when one has
// come or gone meanwhile.
template <class Attr, class Each> void forEachChild(typename Attr::Owner& of, Each const& each) {
  auto& field = Attr::field(of);
  if constexpr (kKind<Attr> == Kind::child) {
    if (field) each(Vyx::Ptr<typename Attr::ChildType>(field));
  } else {
    using Map = std::remove_reference_t<decltype(field)>;
    auto const begin = [&] { return typename Map::IteratorConst(field); };
    for (auto at = begin(); at;) {
      auto const version = field.version();
      each(Vyx::Ptr<typename Attr::ChildType>(at.member().ptr()));
      if (field.version() == version)
        ++at;
      else
        at = begin();
    }
  }
}

} // namespace replication
