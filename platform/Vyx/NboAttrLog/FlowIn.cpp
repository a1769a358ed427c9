#include "Vyx/NboAttrLog/FlowIn.h"

#include <memory>

namespace Vyx::NboAttrLog {

void FlowIn::iterIs(void* iterator) {
  std::unique_ptr<TextIterator> const old(static_cast<TextIterator*>(iter_));
  iter_ = iterator;
}

TextIterator& vyxFlowInIterator(FlowIn& flowIn, AttributeId aid, bool) {
  if (!flowIn.iter()) {
    flowIn.aidIs(aid);
    require(!flowIn.iter(), "!rrc->iter()", "Vyx/NboAttrLogFlow", 115);
    flowIn.iterIs(new TextIterator);
  }
  return *static_cast<TextIterator*>(flowIn.iter());
}

void vyxFlowInIteratorIs(FlowIn& flowIn, AttributeId aid, TextIterator const& at) {
  require(!flowIn.iter(), "!rrc->iter()", "Vyx/NboAttrLogFlow", 128);
  flowIn.aidIs(aid);
  flowIn.iterIs(new TextIterator(at));
}

} // namespace Vyx::NboAttrLog
