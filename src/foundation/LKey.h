// One key with its modifiers in 32 bits, as it stands in tables and settings.
// Law      bits 0-15 the upper-cased character that the key gives unshifted on the present layout; bits 16, 17, 19, 20
//          Command (Ctrl), Shift, Option (Alt), Control (Meta); bits 24-31 a code in place of a character for keys that
//          give none. The codes are stored values and the same on every system. 0 is no key.
// Threads  [any]
#pragma once
#include <cstdint>
#include <string>

class LKey {
 public:
  static constexpr std::uint32_t kCommand = 0x10000, kShift = 0x20000, kOption = 0x80000, kControl = 0x100000;
  static constexpr std::uint32_t kModifiers = kCommand | kShift | kOption | kControl;

  constexpr LKey() = default;
  constexpr explicit LKey(std::uint32_t value) : value_(value) {}
  static LKey FromCharacter(char16_t character, std::uint32_t modifiers = 0);  // upper-cases ASCII and Latin-1
  static constexpr LKey FromCode(int code, std::uint32_t modifiers = 0) {
    return LKey((std::uint32_t(code) << 24) | (modifiers & kModifiers));
  }

  constexpr std::uint32_t Value() const { return value_; }
  constexpr std::uint32_t Modifiers() const { return value_ & kModifiers; }
  constexpr char16_t Character() const { return char16_t(value_ & 0xFFFF); }
  constexpr int Code() const { return int(value_ >> 24); }
  constexpr bool IsModifierOnly() const { return Character() == 0 && Code() == 0; }  // true for no key as well
  friend constexpr bool operator==(LKey a, LKey b) = default;

  // "Strg+Umschalt+O", for menus, lists and tool tips; empty for no key.
  std::string GetDisplayText() const;

 private:
  std::uint32_t value_ = 0;
};

namespace LKeyCode {
inline constexpr int kReturn = 36, kTab = 48, kBackspace = 51, kEscape = 53, kCapsLock = 57, kVolumeUp = 72,
                     kVolumeDown = 73, kMute = 74, kMenu = 110, kHelp = 114, kHome = 115, kPageUp = 116, kDelete = 117,
                     kEnd = 119, kPageDown = 121, kLeft = 123, kRight = 124, kDown = 125, kUp = 126;
inline constexpr int kFunction[] = {122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                    103, 111, 105, 107, 113, 106, 64, 79,  80,  90};  // F1 to F20
}  // namespace LKeyCode
