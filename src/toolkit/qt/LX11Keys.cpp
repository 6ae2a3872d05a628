#include "toolkit/qt/LX11Keys.h"

#if defined(TAVI_HAVE_X11)
#include <QGuiApplication>
// X's headers define short words as macros, so they come after Qt's.
#include <X11/XKBlib.h>

unsigned LX11UnshiftedCharacter(unsigned keyCode, int group) {
  const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11 || keyCode < 8 || keyCode > 255) return 0;
  const KeySym symbol = XkbKeycodeToKeysym(x11->display(), KeyCode(keyCode), unsigned(group), 0);
  const bool latin1 = (symbol >= 0x20 && symbol <= 0x7E) || (symbol >= 0xA0 && symbol <= 0xFF);
  if (latin1) return unsigned(symbol);
  const bool unicode = (symbol & 0xFF000000) == 0x01000000;  // symbols beyond X's own tables are Unicode plus this
  return unicode ? unsigned(symbol & 0xFFFFFF) : 0;
}
#else
unsigned LX11UnshiftedCharacter(unsigned, int) { return 0; }
#endif
