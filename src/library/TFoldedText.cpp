#include "library/TFoldedText.h"

#include <locale.h>

#include <clocale>
#include <cwctype>

#include "foundation/LXMLText.h"

namespace {

// Of the machine's tables, whatever the user's language; null where it has none.
locale_t Utf8Locale() {
  static const locale_t locale = [] {
    for (const char* name : {"C.UTF-8", "en_US.UTF-8", "UTF-8"})
      if (const locale_t found = ::newlocale(LC_CTYPE_MASK, name, locale_t(nullptr))) return found;
    return locale_t(nullptr);
  }();
  return locale;
}

// The length of the well-formed sequence at the beginning, and its character; 0: there is none.
std::size_t Decode(std::string_view text, std::uint32_t& character) {
  const auto byte = [&](std::size_t i) { return std::uint32_t(static_cast<unsigned char>(text[i])); };
  const std::uint32_t first = byte(0);
  const std::size_t length = first >= 0xF0 && first < 0xF8 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first >= 0xF8 || text.size() < length) return 0;
  character = first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    character = character << 6 | (byte(i) & 0x3F);
  }
  return length;
}

}  // namespace

void AppendFoldedText(std::string& out, std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (static_cast<unsigned char>(c) < 128) {
      out += c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
      ++i;
      continue;
    }
    std::uint32_t character = 0;
    const std::size_t length = Utf8Locale() ? Decode(text.substr(i), character) : 0;
    const auto lower = length ? std::uint32_t(::towlower_l(wint_t(character), Utf8Locale())) : character;
    if (lower == character) {
      out.append(text, i, length ? length : 1);
    } else {
      LAppendUtf8(out, lower);
    }
    i += length ? length : 1;
  }
}
