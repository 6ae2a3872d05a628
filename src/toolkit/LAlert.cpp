#include "toolkit/LAlert.h"

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

int LAlert::Run(LWindow* parent) {
  if (buttons.empty()) buttons.emplace_back("OK");
  if (buttons.size() > kMaxButtons) buttons.resize(kMaxButtons);
  LModalScope modal(LPlatform::Toolkit());
  return LPlatform::Toolkit().RunAlert(*this, parent);
}

int LAlert::EscapeIndex() const {
  const int last = int(buttons.size()) - 1;
  return escapeButton >= 0 && escapeButton <= last ? escapeButton : last;
}
