#include "Vyx/NboAttrLog/Exceptions.h"

namespace Vyx {

void throwProtocolException(String8 const& message) { throw ProtocolException(message); }

void throwAttrLogRecordException(String8 const& message) { throw AttrLogRecordException(message); }

void throwEntityIdUnavailable(String8 const& entity) {
  throw EntityIdUnavailableException(String8("the log doesn't know ") + entity + String8(" yet"));
}
void throwReadOnlyException(String8 const& message) { throw ReadOnlyException(message); }

} // namespace Vyx
