#include "toolkit/LPropertySheet.h"

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

int LPropertySheet::Run(LWindow* parent) {
  ended_ = false;
  result_ = LDialog::kCancel;
  LModalScope modal(LPlatform::Toolkit());
  for (LDialog* page : pages_) page->CreatePeer();
  LPlatform::Toolkit().RunPropertySheet(*this, parent);
  for (LDialog* page : pages_) page->DestroyPeer();
  return result_;
}

void LPropertySheet::SelectPage(int index) {
  if (index < 0 || index >= int(pages_.size()) || index == selected_) return;
  selected_ = index;
  EvPageChanged(index);
}

void LPropertySheet::Press(int id) {
  const bool ok = id == LDialog::kOk;
  for (int i = 0; i < int(pages_.size()); ++i) {
    LDialog& page = *pages_[std::size_t(i)];
    if (ok ? page.CmOk() : page.CmCancel()) continue;
    SelectPage(i);
    return;
  }
  result_ = id;
  ended_ = true;
}
