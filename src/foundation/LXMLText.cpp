#include "foundation/LXMLText.h"

#include "foundation/LFile.h"

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsHighHalf(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowHalf(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// The units start behind the byte order mark; an odd byte at the end is dropped.
std::string FromUtf16(std::string_view bytes, bool bigEndian) {
  const std::size_t units = bytes.size() / 2;
  const auto unit = [&](std::size_t i) {
    const auto first = std::uint32_t(static_cast<unsigned char>(bytes[2 * i]));
    const auto second = std::uint32_t(static_cast<unsigned char>(bytes[2 * i + 1]));
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  std::string text;
  text.reserve(units);
  for (std::size_t i = 1; i < units; ++i) {
    std::uint32_t character = unit(i);
    if (IsHighHalf(character) && i + 1 < units && IsLowHalf(unit(i + 1))) {
      character = 0x10000 + ((character - 0xD800) << 10) + (unit(i + 1) - 0xDC00);
      ++i;
    }
    LAppendUtf8(text, character);
  }
  return text;
}

}  // namespace

bool LLoadTextAutoChar(const std::string& path, std::string& text) {
  auto bytes = LFile::ReadAll(path);
  if (!bytes) return false;
  const bool little = bytes->starts_with("\xFF\xFE"), big = bytes->starts_with("\xFE\xFF");
  text = little || big ? FromUtf16(*bytes, big) : std::move(*bytes);
  return true;
}

void LHTMLEncodeToWriter(std::string& out, std::string_view text) {
  const auto entityOf = [](char c) {
    return c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '"' ? "&quot;" : nullptr;
  };
  std::size_t written = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* entity = entityOf(text[i]);
    if (!entity) continue;
    out.append(text, written, i - written).append(entity);
    written = i + 1;
  }
  out.append(text, written);
}

void LAppendUtf8(std::string& out, std::uint32_t character) {
  if (character > 0x10FFFF || IsHighHalf(character) || IsLowHalf(character)) character = kReplacement;
  if (character < 0x80) {
    out += char(character);
  } else if (character < 0x800) {
    out += char(0xC0 | character >> 6);
    out += char(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    out += char(0xE0 | character >> 12);
    out += char(0x80 | (character >> 6 & 0x3F));
    out += char(0x80 | (character & 0x3F));
  } else {
    out += char(0xF0 | character >> 18);
    out += char(0x80 | (character >> 12 & 0x3F));
    out += char(0x80 | (character >> 6 & 0x3F));
    out += char(0x80 | (character & 0x3F));
  }
}
