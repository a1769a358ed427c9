#include "Vyx/Exception.h"

namespace Vyx {

namespace {

Exception::IdBitArray rangeId() {
  Exception::IdBitArray ids;
  ids.set(Exception::kRange);
  return ids;
}

} // namespace

RangeException::RangeException(String8 message) : RangeException(std::move(message), rangeId(), false) {}

RangeException::RangeException(String8 message, IdBitArray const& ids, bool fromText)
    : Exception(std::move(message)), ids_(ids), fromText_(fromText) {}

void throwRangeException(char const* message) { throw RangeException(message); }

void throwInternalException(String8 const& message) { throw InternalException(message); }

void throwNameInUseException(String8 const& message) { throw NameInUseException(message); }

void rethrowFromDeserializeAttr(RangeException const& error, String8 const& attribute) {
  throw RangeException(attribute + ": " + error.message(), error.ids(), error.fromText());
}

} // namespace Vyx
