// Bytes of an attribute log, told in hexadecimal.

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<unsigned char>;

// "00 1f".
std::string hexOf(std::span<unsigned char const> bytes);
// Blanks mean nothing.
Bytes bytesOf(std::string_view hex);

// The frame around a payload; its checksum is computed by other means than the log's own.
Bytes frameOf(std::string_view hexOfHeaderAndPayload);
