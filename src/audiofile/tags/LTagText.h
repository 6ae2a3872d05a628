// Text of tags, in whatever letters it was written, as UTF-8. It ends at its terminator or where its bytes end.
// Units    bytes
// Threads  [any]
// Failure  a half surrogate becomes the replacement character; an odd last byte of UTF-16 is left out.
#pragma once
#include <string>
#include <string_view>

bool IsUtf8(std::string_view text);
std::string Latin1ToUtf8(std::string_view text);
std::string TextToUtf8(std::string_view text);  // UTF-8 stays; anything else is Latin-1

enum LID3Encoding : unsigned char { lieLatin1 = 0, lieUtf16 = 1, lieUtf16BigEndian = 2, lieUtf8 = 3 };

// UTF-16 without a byte order mark is little-endian. Returns the bytes used, those of the terminator included.
std::size_t ReadID3String(std::string& out, unsigned char encoding, std::string_view bytes);
