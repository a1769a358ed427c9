// Two configurations and the handler that copies the one onto the other.

#pragma once

#include "ConfigTree.h"
#include "Pbr/PbrCopy.h"
#include "TreeRecorder.h"
#include "Vyx/VyxType.h"
#include "support/Invariants.h"

#include <optional>

using Cli::Session::AttributeFilter;
using Cli::Session::EntityCopy;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

// Notes each copy of attributes that a handler asks for, and answers in its place where told to.
class SpyCopy final : public EntityCopy {
public:
  bool doCopyEntityAttrs(Vyx::Ptr<Vyx::Entity> const& dest, Vyx::Ptr<Vyx::Entity const> const& src,
                         Vyx::String8 path, Vyx::Ptr<AttributeFilter const> const& filter) override {
    calls.push_back(std::string(dest->fwkType()->name().view()) + " '" + path.charPtr() + "'" +
                    (filter ? " filtered" : ""));
    return answer ? *answer : EntityCopy::doCopyEntityAttrs(dest, src, path, filter);
  }
  Lines calls;
  std::optional<bool> answer;
};

class CopyTest : public testing::Test {
protected:
  bool copy(char const* path = "session") { return handler->handleEntity(ec, dest, src, path); }
  // What a copy does, in the order of the notifications.
  Lines heardOfCopy() {
    TreeRecorder recorder(dest);
    copy();
    return recorder.take();
  }
  void TearDown() override {
    EXPECT_THAT(configFaults(*src), IsEmpty());
    EXPECT_THAT(configFaults(*dest), IsEmpty());
  }

  ConfigPtr const src = Pbr::configFactory("src");
  ConfigPtr const dest = Pbr::configFactory("dest");
  Vyx::Ptr<SpyCopy> const ec = Vyx::make<SpyCopy>();
  Vyx::Ptr<Pbr::ConfigCopyHandlerDir> const dir = Pbr::configCopyHandlerDirFactory("dir");
  Vyx::Ptr<Pbr::ConfigCopyHandler> const handler = dir->configHandlerIs();
};

// The lines among `lines` that begin so.
inline Lines linesOf(Lines const& lines, std::string const& begin) {
  Lines those;
  for (std::string const& line : lines)
    if (line.starts_with(begin)) those.push_back(line);
  return those;
}

// The message of the exception that the call is to raise.
template <class Exception, class Call> std::string messageOf(Call const& call) {
  try {
    call();
  } catch (Exception const& error) {
    return error.what();
  }
  return "nothing was thrown";
}
