#include "CopyFixture.h"

namespace {

class ConfigCopyOrderTest : public CopyTest {};

TEST_F(ConfigCopyOrderTest, SwitchesClassMapsLeavingPolicyMapsBindingsPolicyMaps) {
  src->bgpPbrRedirectIs(true);
  addClassMap(*dest, "oldClass");
  addRules(*addClassMap(*src, "web"), {"ip any any"});
  addForward(*dest, *addPolicyMap(*dest, "oldPolicy"), "oldClass", 1);
  dest->pmapType()->intfIs("et1", "oldPolicy");
  dest->pmapType()->intfFallbackIs("et1", "oldPolicy");
  src->pmapType()->intfIs("et2", "edge");
  src->pmapType()->intfFallbackIs("et3", "edge");
  auto const edge = addPolicyMap(*src, "edge");
  addForward(*src, *edge, "web", 2, {"10.0.0.1"});
  addSetDscp(*src, *edge, "web", 3, 46);
  edge->classAction("web")->sequenceIs(10);

  std::string const pmap = "pmapType.pmap[edge]";
  std::string const content = pmap + ".subconfig[00000001-0000-0000]";
  std::string const web = content + ".classAction[web]";
  EXPECT_THAT(heardOfCopy(),
              ElementsAre("bgpPbrRedirect",                                              //
                          "cmapType.cmap[oldClass]-",                                    //
                          "cmapType.cmap[web]+",                                         //
                          "cmapType.cmap[web].subconfig[00000001-0000-0000]+",           //
                          "cmapType.cmap[web].subconfig[00000001-0000-0000].match[10]+", //
                          "cmapType.cmap[web].currentSubConfig",                         //
                          "pbrActions.fwdAction[00000001-0000-0000]-",                   //
                          "pmapType.pmap[oldPolicy]-",                                   //
                          "pmapType.intf[et1]-",                                         //
                          "pmapType.intf[et2]+",                                         //
                          "pmapType.intfFallback[et1]-",                                 //
                          "pmapType.intfFallback[et3]+",                                 //
                          pmap + "+",                                                    //
                          content + "+",                                                 //
                          web + "+",                                                     //
                          web + ".sequence",                                             //
                          "pbrActions.fwdAction[00000002-0000-0000]+",                   //
                          "pbrActions.fwdAction[00000002-0000-0000].nexthop[10.0.0.1]+", //
                          web + ".policyAction[actionPbrForward]+",                      //
                          "pbrActions.dscpAction[00000003-0000-0000]+",                  //
                          web + ".policyAction[actionPbrSetDscp]+",                      //
                          pmap + ".currentSubConfig"));
}

TEST_F(ConfigCopyOrderTest, BindingNamesForAWhileAPolicyMapThatIsNotThere) {
  addPolicyMap(*src, "edge");
  src->pmapType()->intfIs("et1", "edge");
  Lines const heard = heardOfCopy();
  ASSERT_LE(2U, heard.size());
  EXPECT_EQ("pmapType.intf[et1]+", heard[0]);
  EXPECT_EQ("pmapType.pmap[edge]+", heard[1]);
}

TEST_F(ConfigCopyOrderTest, LoopsGoOnWhenAReactorChangesTheCollection) {
  class Sweeper final : public PolicyMap::PolicyMapTypeConfig::Notifiee {
  public:
    using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onPmap;
    void onPmap(Vyx::Name name) override {
      if (name == "a") notifier()->pmapDel("b");
    }
  };
  for (char const* name : {"a", "b", "c"}) addPolicyMap(*dest, name);
  auto const sweeper = Vyx::make<Sweeper>();
  sweeper->isRegisteredNotifieeIs(true);
  sweeper->notifierIs(dest->pmapType());
  EXPECT_THAT(heardOfCopy(), ElementsAre("pmapType.pmap[b]-", "pmapType.pmap[a]-", "pmapType.pmap[c]-"));
}

} // namespace
