// Reactors on the types of the shop, and the fixture of a shelf with one of them.

#pragma once

#include "Shop/Shop.h"

#include "support/Heard.h"
#include "support/TextForms.h"

#include <gtest/gtest.h>

class ShelfListener : public Recorder<Shop::Shelf> {
public:
  using Recorder::Recorder;
  void onLit() override { hear("lit"); }
  void onSmall() override { hear("small"); }
  void onMedium() override { hear("medium"); }
  void onLarge() override { hear("large"); }
  void onHuge() override { hear("huge"); }
  void onWidth() override { hear("width"); }
  void onOwner() override { hear("owner"); }
  void onRemark() override { hear("remark"); }
  void onGrade() override { hear("grade"); }
  void onLent() override { hear("lent"); }
  void onPrice(unsigned key) override { hear("price", key); }
  void onPricevyxImmediate() override { hear("price immediate"); }
  void onPrice() override { hear("price"); }
  void onLabel(Vyx::Name key) override { hear("label", key); }
  void onLabelvyxImmediate() override { hear("label immediate"); }
  void onLabel() override { hear("label"); }
  void onBox() override { hear("box"); }
  void onTool(Vyx::Name key) override { hear("tool", key); }
  void onToolvyxImmediate() override { hear("tool immediate"); }
  void onTool() override { hear("tool"); }
  void onPart(unsigned key) override { hear("part", key); }
  void onPartvyxImmediate() override { hear("part immediate"); }
  void onPart() override { hear("part"); }
  void onBest() override { hear("best"); }
  void onByGrade(Shop::Grade key) override { hear("byGrade", key); }
  void onByGradevyxImmediate() override { hear("byGrade immediate"); }
  void onByGrade() override { hear("byGrade"); }
  void onNote(unsigned key) override { hear("note", key); }
  void onNotevyxImmediate() override { hear("note immediate"); }
  void onNote() override { hear("note"); }
  void onSign(unsigned key) override { hear("sign", key); }
  void onSignvyxImmediate() override { hear("sign immediate"); }
  void onSign() override { hear("sign"); }
};

class DrillListener : public Recorder<Shop::Drill> {
public:
  using Recorder::Recorder;
  void onPlace() override { hear("place"); }
  void onRunning() override { hear("running"); }
  void onSpeed(unsigned key) override { hear("speed", key); }
  void onSpeedvyxImmediate() override { hear("speed immediate"); }
  void onSpeed() override { hear("speed"); }
};

class SignListener : public Recorder<Shop::Sign> {
public:
  using Recorder::Recorder;
  void onVersion() override { hear("version"); }
};

class ItemListener : public Recorder<Shop::Item> {
public:
  using Recorder::Recorder;
  void onPlace() override { hear("place"); }
};

class ShelfTest : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Shop::Shelf> const shelf = Shop::shelfFactory("shelf");
  Vyx::Ptr<ShelfListener> const listener = listen<ShelfListener>(shelf, heard);

  std::string told() { return heard.take(); }
};
