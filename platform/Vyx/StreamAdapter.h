// What joins one entity to one attribute log. Reactors that work for a stream adapter stand at the head of
// the reactor list, so that the log hears of a change before any plain reactor.

#pragma once

#include "Vyx/Entity.h"

namespace Vyx {

class StreamAdapter : public PtrInterface::NotifieeConst {
public:
  bool isStreamAdapter() const override { return true; }

protected:
  StreamAdapter() = default;
};

class Entity::VyxNboAttrLogSa : public StreamAdapter {
protected:
  VyxNboAttrLogSa() = default;
};

} // namespace Vyx
