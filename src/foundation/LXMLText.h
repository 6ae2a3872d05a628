// Text on its way into and out of XML and HTML: character sets and escapes. Text is UTF-8; bytes that are none pass
// through unchanged.
// Threads  [any]
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// Loads a whole file. UTF-16 with a byte order mark in either order becomes UTF-8, a half pair becomes U+FFFD; other
// bytes stay as they are. False: the file cannot be read.
bool LLoadTextAutoChar(const std::string& path, std::string& text);

// Appends text with & < > " as entities.
void LHTMLEncodeToWriter(std::string& out, std::string_view text);
inline void LHTMLEncodeToWriterSimple(std::string& out, std::string_view text) { LHTMLEncodeToWriter(out, text); }

// Appends one character; what is none becomes U+FFFD.
void LAppendUtf8(std::string& out, std::uint32_t character);
