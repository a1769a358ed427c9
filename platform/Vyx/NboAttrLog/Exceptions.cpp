#include "Vyx/NboAttrLog/Exceptions.h"

namespace Vyx {

void throwProtocolException(String8 const& message) { throw ProtocolException(message); }

void throwAttrLogRecordException(String8 const& message) { throw AttrLogRecordException(message); }

} // namespace Vyx
