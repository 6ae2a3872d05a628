#include "toolkit/LProcessDialog.h"

#include "foundation/LClock.h"
#include "foundation/LPlatform.h"
#include "toolkit/LProcessEventsHandler.h"

void LProcessDialogRunInterface::DirectOpen(LWindow* parent) {
  if (open_) return;
  open_ = true;
  parent_ = parent;
  openedMs_ = LPlatform::Clock().NowMs();
  OpenPeer(parent, false);
}

void LProcessDialogRunInterface::DirectClose() {
  if (!open_) return;
  open_ = false;
  ClosePeer(parent_);
}

void LProcessDialogRunInterface::Changed() {
  if (!open_) return;
  if (LPlatform::Clock().NowMs() - openedMs_ >= kAppearsAfterMs) ShowPeer();
  LProgressDialog::Changed();
  LSignalObjectGroup nothing;
  LProcessEventsHandler::ProcessWaitSignalObjectGroupAndProcessEvents(nothing, 0);
}
