#include "foundation/LKey.h"

#include <iterator>

namespace {

struct NamedCode {
  int code;
  const char* name;
};
constexpr NamedCode kNames[] = {
    {LKeyCode::kReturn, "Eingabe"},
    {LKeyCode::kTab, "Tab"},
    {LKeyCode::kBackspace, "Rücktaste"},
    {LKeyCode::kEscape, "Esc"},
    {LKeyCode::kHelp, "Einfg"},
    {LKeyCode::kHome, "Pos1"},
    {LKeyCode::kCapsLock, "Feststelltaste"},
    {LKeyCode::kEnd, "Ende"},
    {LKeyCode::kPageUp, "Bild auf"},
    {LKeyCode::kPageDown, "Bild ab"},
    {LKeyCode::kDelete, "Entf"},
    {LKeyCode::kVolumeUp, "Lauter"},
    {LKeyCode::kVolumeDown, "Leiser"},
    {LKeyCode::kMute, "Ton aus"},
    {LKeyCode::kMenu, "Menü"},
    {LKeyCode::kLeft, "←"},
    {LKeyCode::kRight, "→"},
    {LKeyCode::kDown, "↓"},
    {LKeyCode::kUp, "↑"},
};

struct NamedModifier {
  std::uint32_t mask;
  const char* name;
};
constexpr NamedModifier kModifierNames[] = {
    {LKey::kControl, "Meta+"}, {LKey::kCommand, "Strg+"}, {LKey::kOption, "Alt+"}, {LKey::kShift, "Umschalt+"}};

std::string CodeText(int code) {
  for (const NamedCode& named : kNames)
    if (named.code == code) return named.name;
  for (std::size_t i = 0; i < std::size(LKeyCode::kFunction); ++i)
    if (LKeyCode::kFunction[i] == code) return std::string(1, 'F').append(std::to_string(i + 1));
  return "Unbekannt";
}

std::string Utf8(char16_t c) {
  if (c < 0x80) return {char(c)};
  if (c < 0x800) return {char(0xC0 | (c >> 6)), char(0x80 | (c & 0x3F))};
  return {char(0xE0 | (c >> 12)), char(0x80 | ((c >> 6) & 0x3F)), char(0x80 | (c & 0x3F))};
}

std::string CharacterText(char16_t c) {
  if (c == u' ') return "Leertaste";
  const bool printable = c > u' ' && c != 0x7F && (c < 0xD800 || c > 0xDFFF);
  return printable ? Utf8(c) : "Unbekannt";
}

}  // namespace

LKey LKey::FromCharacter(char16_t character, std::uint32_t modifiers) {
  const bool lowerAscii = character >= u'a' && character <= u'z';
  const bool lowerLatin1 = character >= 0xE0 && character <= 0xFE && character != 0xF7;  // not the division sign
  if (lowerAscii || lowerLatin1) character = char16_t(character - 0x20);
  return LKey(character | (modifiers & kModifiers));
}

std::string LKey::GetDisplayText() const {
  if (IsModifierOnly()) return "";
  std::string text;
  for (const NamedModifier& modifier : kModifierNames)
    if (value_ & modifier.mask) text += modifier.name;
  return text + (Code() != 0 ? CodeText(Code()) : CharacterText(Character()));
}
