// The byte in front of each piece of a text, see TextPiece.h.

#pragma once

namespace Vyx::NboAttrLog {

enum TextPieceFlag : unsigned char { kFirstPiece = 1, kMoreFollow = 2 };

} // namespace Vyx::NboAttrLog
