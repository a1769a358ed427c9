// Builds a policy configuration and an entity of a schema of our own, and hears of changes to both.

#include "Pbr/Pbr.h"
#include "Site/Site.h"

#include <iostream>

namespace {

class SwitchWatch : public Pbr::Config::Notifiee {
public:
  void onBgpPbrRedirect() override { std::cout << "heard: bgpPbrRedirect\n"; }
};

class MetricWatch : public Site::Uplink::Notifiee {
public:
  void onMetric() override { std::cout << "heard: metric\n"; }
};

} // namespace

int main() {
  auto const config = Vyx::ptrFromNew(new Pbr::Config("branch"));
  auto const watch = Vyx::ptrFromNew(new SwitchWatch);
  watch->isRegisteredNotifieeIs(true);
  watch->notifierIs(config);
  config->bgpPbrRedirectIs(true);
  config->bgpPbrRedirectIs(true); // Equal: nobody hears.

  auto const branch = Vyx::ptrFromNew(new Site::Branch("branch"));
  auto const uplink = branch->uplinkIs("wan0");
  auto const metrics = Vyx::ptrFromNew(new MetricWatch);
  metrics->isRegisteredNotifieeIs(true);
  metrics->notifierIs(uplink);
  uplink->metricIs(10);
  branch->policyIs(config);

  std::cout << "uplinks: " << branch->uplinks() << ", metric of " << uplink->name().charPtr() << ": "
            << uplink->metric() << '\n';
  std::cout << "redirect of " << branch->policy()->name().charPtr() << ": "
            << branch->policy()->bgpPbrRedirect() << '\n';
}
