// Applying messages to an entity, through its ordinary setters, so that its reactors hear of them as of any
// other change. Every value of a message is read and checked before anything is changed.
//
// With `message.isApplied` false the message is only read, and the own value is written instead.

#pragma once

#include "Vyx/MsgChannel.h"
#include "frame/ChildCollection.h"
#include "frame/OwnedChild.h"
#include "frame/Queue.h"
#include "frame/ValueCollection.h"
#include "replication/Children.h"
#include "replication/Values.h"

namespace replication {

using Message = StreamAdapter::IncomingMessage;

// Whether this side's members go before those of the walk that is coming in.
template <class Attr, class Sa> bool keepsOwn(Sa const& adapter) {
  if (!adapter.vyxHasFlowIn() || !adapter.vyxDemuxer()) return false;
  Vyx::NboAttrLog::FlowIn const* const flowIn = adapter.vyxDemuxer()->flowIn(adapter.entityId());
  return flowIn && flowIn->aid() == Attr::id && flowIn->keepsOwn();
}

// Whether an entity of that id was here and is gone. This side has removed it, and the other one hasn't heard
// of that yet.
inline bool isLate(StreamAdapter const& adapter, Vyx::EntityId const& coming) {
  Vyx::NboAttrLog::Demuxer const* const demuxer = adapter.vyxDemuxer();
  return demuxer && !adapter.flag(StreamAdapter::readOnlyFlag) && demuxer->wasGiven(coming) &&
         !demuxer->reactor(coming);
}

// Writes what this side holds, in the middle of applying a message.
template <class Attr, class Sa, class... Key> void restate(Sa& adapter, Key const&... key) {
  adapter.flagIs(StreamAdapter::isActiveFlag, false);
  Attr::tell(adapter, key...);
}

// A change of the other side that was written before it had heard of this one's: both have applied what came,
// and would end with each other's. The accepting side writes what it holds now, which both then have. Which
// attribute of the entity was changed isn't kept, so this may restate what wasn't crossed. A walk has its own
// rules.
template <class Attr, class Sa, class... Key> void settleCrossing(Sa& adapter, Key const&... key) {
  if (hasCrossedOwn(adapter) && !adapter.handlingFlowInFor(Attr::id)) restate<Attr>(adapter, key...);
}

template <class Attr, class Sa> void applyScalar(Sa& adapter, Message const& message) {
  auto const value = readValue<typename Attr::Type>(message.in, adapter.vyxDemuxer());
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter);
  setValue<Attr>(entityOf(adapter), value);
  settleCrossing<Attr>(adapter);
}

// A reference to what is gone here isn't applied; the other side gets this one's instead. RETURNS whether the
// reference that stands next is one.
template <class Attr, class Sa, class... Key>
bool refuseLateReference(Sa& adapter, In& in, Key const&... key) {
  std::size_t const position = in.position();
  if (!isLate(adapter, in.nextEntityId())) return in.positionIs(position), false;
  in.expectEnd();
  restate<Attr>(adapter, key...);
  return true;
}

template <class Attr, class Sa> void applyReference(Sa& adapter, Message const& message) {
  if (refuseLateReference<Attr>(adapter, message.in)) return;
  auto const value = readEntity<typename Attr::Type::element_type>(message.in);
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter);
  setValue<Attr>(entityOf(adapter), value);
  settleCrossing<Attr>(adapter);
}

// The text so far waits in the flow in.
template <class Attr, class Sa> void applyText(Sa& adapter, Message const& message) {
  if (!message.isApplied) {
    message.in.remainingSkip();
    return Attr::tell(adapter);
  }
  Vyx::Ptr<Vyx::NboAttrLog::Demuxer> const demuxer = adapter.streamDemuxer();
  Vyx::EntityId const id = adapter.entityId();
  Vyx::Ptr<Vyx::NboAttrLog::FlowIn> const flowIn(demuxer ? demuxer->flowIn(id) : nullptr);
  Vyx::TextIterator local;
  Vyx::TextIterator& at = flowIn ? Vyx::NboAttrLog::vyxFlowInIterator(*flowIn, Attr::id, false) : local;
  if (message.n != 0) {
    Vyx::Ptr<Connection::In> const in(&message.in);
    Vyx::ConnectionInSizeAnchor const bound(in, message.n);
    in >> at;
  } else {
    at.restart();
  }
  if (at.position() != 0) {
    if (flowIn || !demuxer) return;
    return Vyx::NboAttrLog::vyxFlowInIteratorIs(*demuxer->flowInIs(id), Attr::id, local);
  }
  setValue<Attr>(entityOf(adapter), at.text());
  if (flowIn) demuxer->flowInDel(id);
  settleCrossing<Attr>(adapter);
}

template <class Attr, class Sa> void applyMember(Sa& adapter, Message const& message) {
  auto const key = readValue<typename Attr::Key>(message.in, adapter.vyxDemuxer());
  auto const value = readValue<typename Attr::Type>(message.in, adapter.vyxDemuxer());
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter, key);
  auto& of = entityOf(adapter);
  if (keepsOwn<Attr>(adapter) && Attr::field(of).find(key)) return;
  if constexpr (requires { Attr::write(of, key, value); })
    Attr::write(of, key, value);
  else
    frame::valueIs<Attr>(of, key, value);
  unmark<Attr>(of, key);
  settleCrossing<Attr>(adapter, key);
}

// The key is that of the entity itself.
template <class Attr, class Sa> void applyReferenceMember(Sa& adapter, Message const& message) {
  auto const key = readValue<typename Attr::Key>(message.in, adapter.vyxDemuxer());
  if (refuseLateReference<Attr>(adapter, message.in, key)) return;
  auto const value = readEntity<typename Attr::Type::element_type>(message.in);
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter, key);
  if (!value) Vyx::throwProtocolException("a member of a collection of references refers to nothing");
  auto& of = entityOf(adapter);
  if (keepsOwn<Attr>(adapter) && Attr::field(of).find(key)) return;
  Attr::write(of, key, value);
  unmark<Attr>(of, key);
  settleCrossing<Attr>(adapter, key);
}

// Keys rise from the head of a queue to its end. One that can't follow the end means that what stands there
// is out of date.
template <class Attr, class Sa> void applyQueued(Sa& adapter, Message const& message) {
  unsigned const key = message.in.nextU32();
  auto const value = readValue<typename Attr::Type>(message.in, adapter.vyxDemuxer());
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter, key);
  if (keepsOwn<Attr>(adapter)) return;
  auto& of = entityOf(adapter);
  if (!frame::queueIs<Attr>(of, key, value)) {
    while (Attr::field(of).tail() && Attr::field(of).tail()->fwkQkey() > key) {
      frame::queueDel<Attr>(of, Attr::field(of).tail()->fwkQkey());
      adapter.flagIs(StreamAdapter::isActiveFlag, true);
    }
    frame::queueEnter<Attr>(of, key, value);
  }
  unmark<Attr>(of, key);
  settleCrossing<Attr>(adapter, key);
}

// Whether this side has made the child since what the other side knew when it wrote: a removal is about the
// one before.
template <class Child> bool isNewToPeer(StreamAdapter const& parent, Child const& child) {
  if (!child) return false;
  auto const adapter = adapterOf(*child, parent.nboAttrLogOut());
  return adapter && !adapter->isKnownToPeer();
}

template <class Attr, class Sa> void applyMemberRemoval(Sa& adapter, Message const& message) {
  auto const key = readValue<typename Attr::Key>(message.in, adapter.vyxDemuxer());
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter, key);
  auto& of = entityOf(adapter);
  if constexpr (kKind<Attr> == Kind::children) {
    if (!isNewToPeer(adapter, Attr::field(of).find(key))) frame::memberDel<Attr>(of, key);
  } else {
    if constexpr (kKind<Attr> == Kind::queue)
      frame::queueDel<Attr>(of, key);
    else
      frame::valueDel<Attr>(of, key);
    settleCrossing<Attr>(adapter, key);
  }
}

template <class Attr, class Sa> void applyChildRemoval(Sa& adapter, Message const& message) {
  message.in.expectEnd();
  if (!message.isApplied) return Attr::tell(adapter);
  auto& of = entityOf(adapter);
  if (!isNewToPeer(adapter, Attr::field(of))) frame::childDel<Attr>(of);
}

// Deletes a child. What follows is still the message's doing. One that the other side hadn't heard of when it
// wrote may yet be made there from this side's announcement, although it is gone here.
template <class Attr, class Sa> void giveWay(Sa& adapter, typename Attr::ChildType& child) {
  auto& of = entityOf(adapter);
  auto const own = adapterOf(child, adapter.nboAttrLogOut());
  if (own && own->flag(StreamAdapter::childAnnouncedFlag) && !own->isKnownToPeer()) own->vyxWithdraw();
  if constexpr (kKind<Attr> == Kind::children)
    frame::memberDel<Attr>(of, typename Attr::Key(child.fwkKey()));
  else
    frame::childDel<Attr>(of);
  adapter.flagIs(StreamAdapter::isActiveFlag, true);
}

// RETURNS the child of those constructor values. One of the same key but other values gives way to it.
template <class Attr, class Sa, class Values>
Vyx::Ptr<typename Attr::ChildType> instantiate(Sa& adapter, Values const& values) {
  auto& of = entityOf(adapter);
  auto make = [&] {
    return std::apply([&](auto const&... value) { return Attr::instantiate(of, value...); }, values);
  };
  if constexpr (kKind<Attr> != Kind::children) {
    return make();
  } else {
    try {
      Vyx::Expect const expect(Vyx::Exception::kNameInUse);
      return make();
    } catch (Vyx::NameInUseException const&) {
    }
    giveWay<Attr>(adapter, *Attr::field(of).find(std::get<Attr::keyPlace>(values)));
    return make();
  }
}

// What the child's own reaction didn't do, since the child stood there before: joins it to its id, or
// replaces it when the id is that of another entity.
template <class Attr, class Sa, class Values>
Vyx::Ptr<typename Attr::ChildType> settle(Sa& adapter, Vyx::Ptr<typename Attr::ChildType> const& child,
                                          Vyx::EntityId const& id, Values const& values) {
  constexpr bool keyed = kKind<Attr> == Kind::children;
  if (adapter.checkEphemeralEntityDeletion(child.ptr(), id, keyed)) {
    giveWay<Attr>(adapter, *child);
    return instantiate<Attr>(adapter, values);
  }
  if constexpr (!keyed) Attr::tell(adapter);
  return child;
}

// Whether this side, which settles changes that cross, has still to announce what it has made under that
// attribute. While the log is being brought up to date that says nothing: everything is still to be
// announced.
template <class Attr, class Sa> bool hasYetToAnnounce(Sa const& adapter) {
  Vyx::NboAttrLog::Demuxer const* const demuxer = adapter.vyxDemuxer();
  return demuxer && demuxer->side() == Vyx::NboAttrLog::Demuxer::accepting &&
         demuxer->phase() == Vyx::NboAttrLog::Demuxer::live && isDirty<Attr>(adapter);
}

// Looks at the child that stands where one is announced, before anything is changed. RETURNS whether it
// stands there by an announcement of this side that has crossed the coming one, or is owed, and stays; the
// other side replaces its own. THROWS: ProtocolException when another entity has the id.
template <class Attr, class Sa, class Values>
bool hasCrossed(Sa& adapter, Vyx::EntityId const& coming, [[maybe_unused]] Values const& values) {
  Vyx::Ptr<typename Attr::ChildType> child;
  if constexpr (kKind<Attr> == Kind::children)
    child = Attr::field(entityOf(adapter)).find(std::get<Attr::keyPlace>(values));
  else
    child = Attr::field(entityOf(adapter));
  Vyx::StreamAdapter const* const user =
      adapter.vyxDemuxer() ? adapter.vyxDemuxer()->reactor(coming) : nullptr;
  if (user && user->vyxNotifierEntity() != child.ptr())
    Vyx::throwProtocolException(Vyx::format("entity id %llx is in use", coming.value()));
  auto const there = child ? adapterOf(*child, adapter.nboAttrLogOut()) : nullptr;
  if (!there || !there->flag(StreamAdapter::childAnnouncedFlag))
    return child && hasYetToAnnounce<Attr>(adapter);
  // One that the other side knew was replaced there on purpose.
  if (adapter.vyxDemuxer()->knowsWhatPeerHeard() && there->isKnownToPeer()) return false;
  return Vyx::NboAttrLog::Demuxer::outranks(there->entityId(), coming);
}

template <class Attr, class Sa> void applyAnnouncement(Sa& adapter, Message const& message) {
  using Values = decltype(constructorValues<Attr>(std::declval<typename Attr::ChildType const&>()));
  In& in = message.in;
  auto const values = ValuesReader<Values>::read(in, adapter.vyxDemuxer());
  if (message.bodyOffset != 0) in.positionIs(message.bodyOffset);
  std::size_t const position = in.position();
  Vyx::EntityId const id = in.nextEntityId();
  in.expectEnd();
  if (!message.isApplied) {
    if constexpr (kKind<Attr> == Kind::children)
      return Attr::tell(adapter, std::get<Attr::keyPlace>(values));
    else
      return Attr::tell(adapter);
  }
  if (!id.isAssigned()) Vyx::throwProtocolException("an announced entity has no id");
  if (isLate(adapter, id)) return;
  if (hasCrossed<Attr>(adapter, id, values)) {
    // What is still on its way to that id is late, not wrong.
    adapter.vyxDemuxer()->peerGave(id);
    return;
  }
  in.positionIs(position);
  Vyx::MsgChannel::DeserializingEidAnchor const anchor(id, &entityOf(adapter));
  auto child = instantiate<Attr>(adapter, values);
  if (adapter.flag(StreamAdapter::isActiveFlag)) {
    in.positionIs(position);
    child = settle<Attr>(adapter, child, id, values);
  }
  if constexpr (kKind<Attr> == Kind::children) child->vyxMarkedForDeletionIs(false);
  if (auto* entry = dynamic_cast<Vyx::MsgChannel::Constrainer::VyxEntry*>(adapter.messageChannelEntry()))
    entry->modeIs(Vyx::MsgChannel::modeAnnounced);
}

// Reads the message of the attribute, positive or negated. RETURNS whether it is one.
template <class Attr, class Sa>
bool applyAttribute(Sa& adapter, Vyx::AttributeId aid, Message const& message) {
  constexpr Kind kind = kKind<Attr>;
  if (aid == -Attr::id) {
    if constexpr (isKeyed<Attr>)
      return applyMemberRemoval<Attr>(adapter, message), true;
    else if constexpr (kind == Kind::child)
      return applyChildRemoval<Attr>(adapter, message), true;
  }
  if (aid != Attr::id) return false;
  if constexpr (kind == Kind::scalar)
    applyScalar<Attr>(adapter, message);
  else if constexpr (kind == Kind::text)
    applyText<Attr>(adapter, message);
  else if constexpr (kind == Kind::reference)
    applyReference<Attr>(adapter, message);
  else if constexpr (kind == Kind::values)
    applyMember<Attr>(adapter, message);
  else if constexpr (kind == Kind::references)
    applyReferenceMember<Attr>(adapter, message);
  else if constexpr (kind == Kind::queue)
    applyQueued<Attr>(adapter, message);
  else
    applyAnnouncement<Attr>(adapter, message);
  return true;
}

} // namespace replication
