// What the reactors of a plant hear.

#pragma once

#include "Cli/Session.h"
#include "Garden/Garden.h"
#include "support/Heard.h"
#include "support/Invariants.h"

class PlantListener final : public Recorder<Garden::Plant> {
  using Garden::Plant::NotifieeConst::onLeaf;
  using Garden::Plant::NotifieeConst::onNeighbour;
  using Garden::Plant::NotifieeConst::onNote;
  using Garden::Plant::NotifieeConst::onPrice;
  using Garden::Plant::NotifieeConst::onTask;

public:
  using Recorder::Recorder;
  void onHeight() override { hear("height"); }
  void onLabel() override { hear("label"); }
  void onAge() override { hear("age"); }
  void onShade() override { hear("shade"); }
  void onTwig() override { hear("twig"); }
  void onLeaf(Vyx::Name name) override { hear("leaf", name); }
  void onLargest() override { hear("largest"); }
  void onPrice(unsigned key) override { hear("price", key); }
  void onNote(Vyx::Name key) override { hear("note", key); }
  void onNeighbour(Garden::Colour colour) override { hear("neighbour", colour); }
  void onTask(unsigned key) override { hear("task", key); }
};

class LeafListener final : public Recorder<Garden::Leaf> {
public:
  using Recorder::Recorder;
  void onWeight() override { hear("weight"); }
};
