#include "TreeRecorder.h"

#include <map>
#include <sstream>

namespace {

using Heard = std::vector<std::string>;

template <class X> class Watch : public X::Notifiee {
public:
  Watch(Heard& heard, std::string path) : heard_(heard), path_(std::move(path)) {}

  void begin(X const& on) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(&on));
  }

protected:
  void scalar(char const* attribute) { heard_.push_back(path_ + attribute); }
  template <class K> void keyed(char const* attribute, K const& key, bool there) {
    heard_.push_back(place(attribute, key) + (there ? "+" : "-"));
  }
  template <class ChildWatch, class K, class T>
  void child(char const* attribute, K const& key, Vyx::Ptr<T> const& now) {
    keyed(attribute, key, static_cast<bool>(now));
    children_.erase(place(attribute, key));
    if (now) follow<ChildWatch>(place(attribute, key), *now);
  }
  template <class ChildWatch, class T> void follow(std::string const& place, T const& on) {
    auto const watch = Vyx::ptrFromNew(new ChildWatch(heard_, place + "."));
    children_[place] = watch;
    watch->begin(on);
  }
  template <class ChildWatch, class At> void followAll(char const* attribute, At at) {
    for (; at; ++at) follow<ChildWatch>(place(attribute, at.key()), *at);
  }

private:
  template <class K> std::string place(char const* attribute, K const& key) const {
    std::ostringstream text;
    text << path_ << attribute << '[' << key << ']';
    return text.str();
  }

  Heard& heard_;
  std::string path_;
  std::map<std::string, Vyx::Ptr<Vyx::PtrInterface>> children_; // By place.
};

class FwdActionWatch final : public Watch<Pbr::PbrFwdAction> {
  using Pbr::PbrFwdAction::NotifieeConst::onNexthop;
  using Watch::Watch;
  void onNexthop(Lomu::IpGenAddr const& key) override {
    auto const at = notifier()->nexthopIteratorConst(key);
    keyed("nexthop", key, at && at.key() == key);
  }
  void onRecursive() override { scalar("recursive"); }
  void onNexthopGroup() override { scalar("nexthopGroup"); }
};

class ContainerWatch final : public Watch<Pbr::PbrActionContainer> {
public:
  using Pbr::PbrActionContainer::NotifieeConst::onDscpAction;
  using Pbr::PbrActionContainer::NotifieeConst::onFwdAction;
  using Watch::Watch;
  void begin(Pbr::PbrActionContainer const& on) {
    followAll<FwdActionWatch>("fwdAction", on.fwdActionIteratorConst());
    Watch::begin(on);
  }
  void onFwdAction(Kest::UniqueId const& id) override {
    child<FwdActionWatch>("fwdAction", id, notifier()->fwdAction(id));
  }
  void onDscpAction(Kest::UniqueId const& id) override {
    keyed("dscpAction", id, static_cast<bool>(notifier()->dscpAction(id)));
  }
};

class ClassContentWatch final : public Watch<PolicyMap::ClassMapSubConfig> {
  using PolicyMap::ClassMapSubConfig::NotifieeConst::onMatch;
  using Watch::Watch;
  void onDynamic() override { scalar("dynamic"); }
  void onMatch(unsigned sequence) override {
    auto const at = notifier()->matchIteratorConst(sequence);
    keyed("match", sequence, at && at.key() == sequence);
  }
};

class ClassActionWatch final : public Watch<PolicyMap::ClassAction> {
  using PolicyMap::ClassAction::NotifieeConst::onPolicyAction;
  using Watch::Watch;
  void onSequence() override { scalar("sequence"); }
  void onPolicyAction(PolicyMap::ActionType type) override {
    keyed("policyAction", type, static_cast<bool>(notifier()->policyAction(type)));
  }
};

class PolicyContentWatch final : public Watch<PolicyMap::PolicyMapSubConfig> {
public:
  using PolicyMap::PolicyMapSubConfig::NotifieeConst::onClassAction;
  using Watch::Watch;
  void begin(PolicyMap::PolicyMapSubConfig const& on) {
    followAll<ClassActionWatch>("classAction", on.classActionIteratorConst());
    Watch::begin(on);
  }
  void onDynamic() override { scalar("dynamic"); }
  void onClassAction(Vyx::Name name) override {
    child<ClassActionWatch>("classAction", name, notifier()->classAction(name));
  }
};

// Class maps and policy maps have the same shape.
template <class Map, class ContentWatch> class MapWatch final : public Watch<Map> {
public:
  using Watch<Map>::Watch;
  using Map::NotifieeConst::onSubconfig;
  void begin(Map const& on) {
    this->template followAll<ContentWatch>("subconfig", on.subconfigIteratorConst());
    Watch<Map>::begin(on);
  }
  void onSubconfig(Kest::UniqueId const& id) override {
    this->template child<ContentWatch>("subconfig", id, this->notifier()->subconfig(id));
  }
  void onCurrentSubConfig() override { this->scalar("currentSubConfig"); }
};

class ClassMapTypeWatch final : public Watch<PolicyMap::ClassMapTypeConfig> {
public:
  using ClassMapWatch = MapWatch<PolicyMap::ClassMapConfig, ClassContentWatch>;
  using PolicyMap::ClassMapTypeConfig::NotifieeConst::onCmap;
  using Watch::Watch;
  void begin(PolicyMap::ClassMapTypeConfig const& on) {
    followAll<ClassMapWatch>("cmap", on.cmapIteratorConst());
    Watch::begin(on);
  }
  void onCmap(Vyx::Name name) override { child<ClassMapWatch>("cmap", name, notifier()->cmap(name)); }
};

class PolicyMapTypeWatch final : public Watch<PolicyMap::PolicyMapTypeConfig> {
public:
  using PolicyMapWatch = MapWatch<PolicyMap::PolicyMapConfig, PolicyContentWatch>;
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onIntf;
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onIntfFallback;
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onPmap;
  using Watch::Watch;
  void begin(PolicyMap::PolicyMapTypeConfig const& on) {
    followAll<PolicyMapWatch>("pmap", on.pmapIteratorConst());
    Watch::begin(on);
  }
  void onPmap(Vyx::Name name) override { child<PolicyMapWatch>("pmap", name, notifier()->pmap(name)); }
  void onIntf(Lomu::IntfId id) override {
    auto const at = notifier()->intfIteratorConst(id);
    keyed("intf", id, at && at.key() == id);
  }
  void onIntfFallback(Lomu::IntfId id) override {
    auto const at = notifier()->intfFallbackIteratorConst(id);
    keyed("intfFallback", id, at && at.key() == id);
  }
};

class ConfigWatch final : public Watch<Pbr::Config> {
public:
  using Watch::Watch;
  void begin(Pbr::Config const& on) {
    follow<ContainerWatch>("pbrActions", *on.pbrActions());
    follow<ClassMapTypeWatch>("cmapType", *on.cmapType());
    follow<PolicyMapTypeWatch>("pmapType", *on.pmapType());
    Watch::begin(on);
  }
  void onPbrUnresolvedNexthopActionDrop() override { scalar("pbrUnresolvedNexthopActionDrop"); }
  void onBgpPbrRedirect() override { scalar("bgpPbrRedirect"); }
  void onPbrEnableNonAgingMacAddr() override { scalar("pbrEnableNonAgingMacAddr"); }
  void onPbrActions() override { scalar("pbrActions"); }
  void onCmapType() override { scalar("cmapType"); }
  void onPmapType() override { scalar("pmapType"); }
};

} // namespace

TreeRecorder::TreeRecorder(ConfigPtr const& on) {
  auto const watch = Vyx::ptrFromNew(new ConfigWatch(heard_, ""));
  watch->begin(*on);
  reactor_ = watch;
}
