// The copy of one configuration onto another.
//
// ORDER: switches, class maps, leaving policy maps, bindings, fallback bindings, policy maps. Bindings can so
// for a while name a policy map that is not there yet.
//
// Every pass walks and changes the destination at once; its iterators find their way on.

#include "Pbr/ConfigCopyHandler.h"

#include "Cli/Session.h"
#include "CopyTrace.h"
#include "Pbr/PolicyMapCopyHandler.h"
#include "SubConfigActions.h"
#include "frame/Beside.h"

namespace Pbr {

namespace {

using PolicyMap::ClassMapTypeConfig;
using PolicyMap::PolicyMapTypeConfig;

constexpr char const* kFunction = "handleEntity";

// A map without content is not dynamic.
template <class Map> bool isDynamic(Map const& map) {
  return map.currentSubConfig() && map.currentSubConfig()->dynamic();
}

// One run of the copy: the two configurations and whether the destination has been changed.
class Run {
public:
  Run(Vyx::Ptr<Cli::Session::EntityCopy> const& ec, Vyx::Ptr<Config> const& dest,
      Vyx::Ptr<Config const> const& src, Vyx::String8 path)
      : ec_(ec), dest_(dest), src_(src), path_(std::move(path)), handler_(policyMapCopyHandlerFactory()) {
    handler_->configIs(dest);
  }

  bool all() {
    switches();
    leavingClassMaps();
    classMaps();
    leavingPolicyMaps();
    bindings<PolicyMapTypeConfig::VyxAttrIntf>();
    bindings<PolicyMapTypeConfig::VyxAttrIntfFallback>();
    policyMaps();
    return changed_;
  }

private:
  template <class Attr> void copySwitch() {
    bool const value = Attr::field(*src_);
    if (value == Attr::field(*dest_)) return;
    frame::set<Attr>(*dest_, value);
    changed_ = true;
  }

  void switches() {
    copySwitch<Config::VyxAttrPbrUnresolvedNexthopActionDrop>();
    copySwitch<Config::VyxAttrBgpPbrRedirect>();
    copySwitch<Config::VyxAttrPbrEnableNonAgingMacAddr>();
  }

  // Whether the destination's map is to be deleted; tells why not where it is kept for being dynamic.
  template <class Map, class Model> bool leaves(Map const& map, Model const& model) const {
    if (isDynamic(map)) {
      traceCopy(9, __LINE__, kFunction, kFunction, " ignoring dynamic ", map.name());
      return false;
    }
    if (model) return false;
    traceCopy(9, __LINE__, kFunction, kFunction, " deleting ", map.name());
    return true;
  }

  // An empty table grows once, and not under its members.
  template <class Attr, class Owner> static void expect(Owner& to, Owner const& from) {
    Attr::field(to).expect(Attr::field(from).count());
  }

  void leavingClassMaps() {
    auto const to = dest_->cmapType();
    auto const from = src_->cmapType();
    frame::Beside models(ClassMapTypeConfig::VyxAttrCmap::field(*from));
    for (auto at = to->cmapIterator(); at; ++at) {
      if (!leaves(*at, models.find(at.key()))) continue;
      to->cmapDel(at);
      changed_ = true;
    }
  }

  // The source's `dynamic` isn't looked at, and a dynamic class map of the same name is copied over.
  void classMaps() {
    auto const to = dest_->cmapType();
    auto const from = src_->cmapType();
    expect<ClassMapTypeConfig::VyxAttrCmap>(*to, *from);
    frame::Beside beside(ClassMapTypeConfig::VyxAttrCmap::field(*to));
    for (auto at = from->cmapIteratorConst(); at; ++at) {
      auto const cmap = beside.findOr(at.key(), [&] { return to->cmapIs(at.key()); });
      Vyx::require(static_cast<bool>(cmap), "cmap", "Pbr/PbrCopy", __LINE__);
      traceCopy(9, __LINE__, kFunction, kFunction, " copying ", at.key());
      changed_ = ec_->doCopyEntityAttrs(cmap, at.member(), path_, nullptr) || changed_;
    }
  }

  void leavingPolicyMaps() {
    auto const to = dest_->pmapType();
    auto const from = src_->pmapType();
    frame::Beside models(PolicyMapTypeConfig::VyxAttrPmap::field(*from));
    for (auto at = to->pmapIterator(); at; ++at) {
      if (!leaves(*at, models.find(at.key()))) continue;
      for (auto sub = at->subconfigIterator(); sub; ++sub) deleteSubConfigActions(dest_, sub.member());
      to->pmapDel(at);
      changed_ = true;
    }
  }

  // Bindings that the source doesn't have go, but for those that name a dynamic policy map; then every one of
  // the source's is set. No change here counts.
  template <class Attr> void bindings() {
    auto const to = dest_->pmapType();
    auto const from = src_->pmapType();
    using Map = std::remove_cvref_t<decltype(Attr::field(*to))>;
    for (frame::Iterator<PolicyMapTypeConfig, Map> at(to, Attr::field(*to)); at; ++at) {
      if (!frame::value<Attr>(*from, at.key()).empty()) continue;
      auto const pmap = to->pmap(at.value());
      if (pmap && isDynamic(*pmap)) continue;
      frame::valueDelAt<Attr>(*to, at);
    }
    for (frame::IteratorConst<Map> at(Attr::field(*from)); at; ++at)
      frame::valueIs<Attr>(*to, at.key(), at.value());
  }

  void policyMaps() {
    // A run over equal trees takes nothing from the heap for its many paths.
    static thread_local Vyx::TextBuffer path("pbr/config.pmapType.pmap.");
    auto const to = dest_->pmapType();
    auto const from = src_->pmapType();
    if (src_->pbrActions() && dest_->pbrActions()) {
      expect<PbrActionContainer::VyxAttrFwdAction>(*dest_->pbrActions(), *src_->pbrActions());
      expect<PbrActionContainer::VyxAttrDscpAction>(*dest_->pbrActions(), *src_->pbrActions());
    }
    frame::Beside beside(PolicyMapTypeConfig::VyxAttrPmap::field(*to));
    for (auto at = from->pmapIteratorConst(); at; ++at) {
      auto const pmap = beside.findOr(at.key(), [&] { return to->pmapIs(at.key()); });
      Vyx::require(static_cast<bool>(pmap), "pmap", "Pbr/PbrCopy", __LINE__);
      traceCopy(9, __LINE__, kFunction, kFunction, " copying ", at.key());
      changed_ = handler_->handleEntity(ec_, pmap, at.member(), path.with(at.key().charPtr())) || changed_;
    }
  }

  Vyx::Ptr<Cli::Session::EntityCopy> const& ec_;
  Vyx::Ptr<Config> const& dest_;
  Vyx::Ptr<Config const> const& src_;
  Vyx::String8 path_;
  Vyx::Ptr<PolicyMapCopyHandler> handler_; // Lives for this run; works on the destination's actions.
  bool changed_ = false;
};

} // namespace

// RETURNS whether a switch was rewritten, a class map or policy map was deleted, or a copy of one reported a
// change. Neither creating a map nor any change of a binding counts by itself.
// There is no way back: what was done before a failure stays.
bool ConfigCopyHandler::handleEntity(Vyx::Ptr<Cli::Session::EntityCopy> const& ec,
                                     Vyx::Ptr<Vyx::Entity> const& dest,
                                     Vyx::Ptr<Vyx::Entity const> const& src, Vyx::String8 path) {
  traceCopy(8, __LINE__, kFunction, kFunction, " ", dest ? dest->name() : Vyx::Name(), " path ", path);
  auto const sconfig = Vyx::dynamicPtrCast<Config const>(src);
  auto const dconfig = Vyx::dynamicPtrCast<Config>(dest);
  Vyx::require(sconfig && dconfig, "sconfig && dconfig", "Pbr/PbrCopy", __LINE__);
  return Run(ec, dconfig, sconfig, path).all();
}

} // namespace Pbr
