// What the runtime raises. `what()` is the message, to the letter.

#pragma once

#include "Vyx/String8.h"

#include <bitset>
#include <exception>

namespace Vyx {

class Exception : public std::exception {
public:
  // What kind of failure a scope may announce as expected; see Expect.
  using Id = unsigned;
  using IdBitArray = std::bitset<64>;

  static constexpr Id kAny = 0;
  static constexpr Id kRange = 12;
  static constexpr Id kNameInUse = 16;

  explicit Exception(String8 message) : message_(std::move(message)) {}
  char const* what() const noexcept override { return message_.charPtr(); }
  String8 const& message() const { return message_; }

private:
  String8 message_;
};

// A value that its type doesn't hold, or a text that doesn't read as one.
class RangeException : public Exception {
public:
  explicit RangeException(String8 message);
  RangeException(String8 message, IdBitArray const& ids, bool fromText);
  IdBitArray const& ids() const { return ids_; }
  bool fromText() const { return fromText_; }

private:
  IdBitArray ids_;
  bool fromText_ = false;
};

class InternalException : public Exception {
public:
  using Exception::Exception;
};

class NameInUseException : public Exception {
public:
  using Exception::Exception;
};

// Reflection (GenericIf) raises these.
class ConstException : public Exception {
public:
  using Exception::Exception;
};
class OpNotSupportedException : public Exception {
public:
  using Exception::Exception;
};
class BadIndexAttrException : public Exception {
public:
  using Exception::Exception;
};
class TypeException : public Exception {
public:
  using Exception::Exception;
};
class UnknownArgException : public Exception {
public:
  using Exception::Exception;
};
class UnknownAttrException : public Exception {
public:
  using Exception::Exception;
};

[[noreturn]] void throwRangeException(char const* message);
[[noreturn]] void throwInternalException(String8 const& message);
[[noreturn]] void throwNameInUseException(String8 const& message);
// Raises the range exception anew with the attribute's name in front of its message: "value: …".
[[noreturn]] void rethrowFromDeserializeAttr(RangeException const& error, String8 const& attribute);

// A scope in which an exception of that kind is expected, so that tools that stop on exceptions let it pass.
class Expect {
public:
  explicit Expect(Exception::Id id) : id_(id) {}
  Expect(Expect const&) = delete;
  Expect& operator=(Expect const&) = delete;
  ~Expect() {}
  Exception::Id id() const { return id_; }

private:
  Exception::Id id_;
};

} // namespace Vyx
