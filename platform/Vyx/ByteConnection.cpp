#include "Vyx/ByteConnection.h"

#include "Vyx/NboAttrLog/Exceptions.h"

namespace Vyx {

String8 ByteConnection::In::nextString() {
  need(sizeof(std::uint32_t));
  std::uint32_t const length = NboAttrLog::loadNetwork<std::uint32_t>(at_);
  std::size_t const left = remaining() - sizeof length;
  if (length > left) throwProtocolException(format("text of %u bytes in %zu bytes of message", length, left));
  std::string_view const text(reinterpret_cast<char const*>(at_ + sizeof length), length);
  at_ += sizeof length + length;
  return texts_.text(text);
}

void ByteConnection::In::positionIs(std::size_t position) {
  std::size_t const size = static_cast<std::size_t>(end_ - begin_);
  if (position > size)
    throwProtocolException(format("position %zu is beyond the end of the message at %zu", position, size));
  at_ = begin_ + position;
}

std::size_t ByteConnection::In::bounded(std::size_t size) {
  need(size);
  std::size_t const more = remaining() - size;
  end_ -= more;
  return more;
}

void ByteConnection::In::failShort(std::size_t size) const {
  throwProtocolException(format("%zu bytes of message needed and %zu left", size, remaining()));
}

void ByteConnection::In::failBool() const { throwProtocolException(format("bool of value %u", *at_)); }

void ByteConnection::In::failLeftOver() const {
  throwProtocolException(format("%zu bytes left over in message", remaining()));
}

} // namespace Vyx
