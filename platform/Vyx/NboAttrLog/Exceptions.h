// What the attribute log raises.

#pragma once

#include "Vyx/Exception.h"

namespace Vyx {

// The kind of failure that a writer expects of the log, see Expect.
inline constexpr Exception::Id kAttrLogRecord = 48;

// A message was begun while another one was left unfinished. The unfinished one is gone, the next attempt
// succeeds.
class AttrLogRecordException : public Exception {
public:
  using Exception::Exception;
};

// Bytes that no writer has written so. The connection they came by is not to be read on.
class ProtocolException : public Exception {
public:
  using Exception::Exception;
};

// An entity can't be named on a log yet.
class EntityIdUnavailableException : public Exception {
public:
  using Exception::Exception;
};

// A change of what another process alone may change.
class ReadOnlyException : public Exception {
public:
  using Exception::Exception;
};

// Apart from the readers, which are inlined.
[[noreturn]] void throwProtocolException(String8 const& message);
[[noreturn]] void throwAttrLogRecordException(String8 const& message);
[[noreturn]] void throwEntityIdUnavailable(String8 const& entity);
[[noreturn]] void throwReadOnlyException(String8 const& message);

} // namespace Vyx
