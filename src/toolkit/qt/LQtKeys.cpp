#include "toolkit/qt/LQtKeys.h"

#include <QChar>
#include <QKeyEvent>
#include <iterator>

#include "toolkit/LWindow.h"
#include "toolkit/qt/LX11Keys.h"

namespace {

struct CodeOfKey {
  int qtKey;
  int code;
};
constexpr CodeOfKey kCodes[] = {
    {Qt::Key_Return, LKeyCode::kReturn},
    {Qt::Key_Enter, LKeyCode::kReturn},
    {Qt::Key_Tab, LKeyCode::kTab},
    {Qt::Key_Backtab, LKeyCode::kTab},
    {Qt::Key_Backspace, LKeyCode::kBackspace},
    {Qt::Key_Escape, LKeyCode::kEscape},
    {Qt::Key_VolumeUp, LKeyCode::kVolumeUp},
    {Qt::Key_VolumeDown, LKeyCode::kVolumeDown},
    {Qt::Key_VolumeMute, LKeyCode::kMute},
    {Qt::Key_Menu, LKeyCode::kMenu},
    {Qt::Key_Help, LKeyCode::kHelp},
    {Qt::Key_Insert, LKeyCode::kHelp},
    {Qt::Key_Home, LKeyCode::kHome},
    {Qt::Key_PageUp, LKeyCode::kPageUp},
    {Qt::Key_Delete, LKeyCode::kDelete},
    {Qt::Key_End, LKeyCode::kEnd},
    {Qt::Key_PageDown, LKeyCode::kPageDown},
    {Qt::Key_Left, LKeyCode::kLeft},
    {Qt::Key_Right, LKeyCode::kRight},
    {Qt::Key_Down, LKeyCode::kDown},
    {Qt::Key_Up, LKeyCode::kUp},
};

int FixedCode(int qtKey) {
  for (const CodeOfKey& row : kCodes)
    if (row.qtKey == qtKey) return row.code;
  const int function = qtKey - Qt::Key_F1;
  if (function >= 0 && function < int(std::size(LKeyCode::kFunction))) return LKeyCode::kFunction[function];
  return 0;
}

// Group of the layout in an X key event's state: bits 13 and 14.
int LayoutGroup(unsigned nativeModifiers) { return int((nativeModifiers >> 13) & 3); }

}  // namespace

unsigned LQtModifiers(int qtModifiers) {
  unsigned modifiers = 0;
  if (qtModifiers & Qt::ControlModifier) modifiers |= LKey::kCommand;
  if (qtModifiers & Qt::ShiftModifier) modifiers |= LKey::kShift;
  if (qtModifiers & Qt::AltModifier) modifiers |= LKey::kOption;
  if (qtModifiers & Qt::MetaModifier) modifiers |= LKey::kControl;
  return modifiers;
}

LKey LKeyFromQt(const QKeyEvent& event) {
  const unsigned modifiers = LQtModifiers(int(event.modifiers()));
  if (const int code = FixedCode(event.key())) return LKey::FromCode(code, modifiers);
  unsigned character = LX11UnshiftedCharacter(event.nativeScanCode(), LayoutGroup(event.nativeModifiers()));
  const bool keypad = event.modifiers() & Qt::KeypadModifier;
  if (character == 0 || keypad) character = event.key() > 0 ? unsigned(event.key()) : 0;
  if (character > 0xFFFF) return LKey(modifiers);
  return LKey::FromCharacter(QChar(char16_t(character)).toUpper().unicode(), modifiers);
}

void LQtSendKey(LWindow& window, const QKeyEvent& event) {
  const LKey key = LKeyFromQt(event);
  if (key.IsModifierOnly()) return;
  const bool used = event.isAutoRepeat() ? window.EvKeyRepeat(key) : window.EvKeyDown(key);
  if (!used) window.EvKeyUnused(key);
}
