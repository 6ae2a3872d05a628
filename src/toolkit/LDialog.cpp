#include "toolkit/LDialog.h"

#include <algorithm>

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

LDialog::LDialog(std::string title, const LDialogRow* rows, int count) : title_(std::move(title)) {
  for (int i = 0; i < count; ++i) {
    LControlState state;
    state.row = rows[i];
    state.text = rows[i].kind == LControlKind::Edit ? "" : rows[i].text;
    state.value = rows[i].low;
    controls_.push_back(std::move(state));
  }
}

LDialog::~LDialog() = default;

int LDialog::Run(LWindow* parent) {
  ended_ = false;
  result_ = kCancel;
  LModalScope modal(LPlatform::Toolkit());
  CreatePeer();
  LPlatform::Toolkit().RunDialog(*this, parent);
  DestroyPeer();
  return result_;
}

void LDialog::CreatePeer() {
  InitDialog();
  peer_ = LPlatform::Toolkit().NewDialog(*this);
}

void LDialog::DestroyPeer() { peer_.reset(); }

void LDialog::Press(int id) {
  if (id == kOk) {
    if (CmOk()) End(kOk);
  } else if (id == kCancel) {
    if (CmCancel()) End(kCancel);
  } else if (IsEnabled(id)) {
    EvControl(id);
  }
}

void LDialog::End(int result) {
  result_ = result;
  ended_ = true;
  if (peer_) peer_->Ended();
}

void LDialog::SetButtonTexts(const std::string& ok, const std::string& cancel) { okText_ = ok, cancelText_ = cancel; }

const LControlState* LDialog::Find(int id) const {
  const auto found =
      std::find_if(controls_.begin(), controls_.end(), [id](const LControlState& c) { return id && c.row.id == id; });
  return found == controls_.end() ? nullptr : &*found;
}

LControlState* LDialog::Edit(int id) {
  const LControlState* found = Find(id);
  return found ? &controls_[std::size_t(found - controls_.data())] : nullptr;
}

void LDialog::Update(int id) {
  if (peer_) peer_->Update(id);
}

void LDialog::SetText(int id, const std::string& text) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->text = text;
  Update(id);
}

std::string LDialog::GetText(int id) const {
  const LControlState* control = Find(id);
  if (!control) return "";
  const bool hasItems = control->row.kind == LControlKind::Combo || control->row.kind == LControlKind::List;
  if (!hasItems) return control->text;
  return control->selected >= 0 ? control->items[std::size_t(control->selected)] : "";
}

void LDialog::CheckRadio(LControlState& chosen) {
  // The group reaches both ways until a control of another kind in the same column.
  const auto at = std::size_t(&chosen - controls_.data());
  const auto untick = [&](std::size_t i) {
    LControlState& other = controls_[i];
    if (other.row.column != chosen.row.column) return true;
    if (other.row.kind != LControlKind::Radio) return false;
    if (other.checked) {
      other.checked = false;
      Update(other.row.id);
    }
    return true;
  };
  for (std::size_t i = at; i-- > 0 && untick(i);) {
  }
  for (std::size_t i = at + 1; i < controls_.size() && untick(i); ++i) {
  }
}

void LDialog::SetChecked(int id, bool checked) {
  LControlState* control = Edit(id);
  if (!control) return;
  if (checked && control->row.kind == LControlKind::Radio) CheckRadio(*control);
  control->checked = checked;
  Update(id);
}

bool LDialog::IsChecked(int id) const {
  const LControlState* control = Find(id);
  return control && control->checked;
}

void LDialog::SetEnabled(int id, bool enabled) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->enabled = enabled;
  Update(id);
}

bool LDialog::IsEnabled(int id) const {
  const LControlState* control = Find(id);
  return control && control->enabled;
}

void LDialog::SetVisible(int id, bool visible) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->visible = visible;
  Update(id);
}

void LDialog::SetValue(int id, int value) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->value = std::max(control->row.low, std::min(value, control->row.high));
  Update(id);
}

int LDialog::GetValue(int id) const {
  const LControlState* control = Find(id);
  return control ? control->value : 0;
}

void LDialog::SetItems(int id, const std::vector<std::string>& items) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->items = items;
  control->selected = -1;
  Update(id);
}

void LDialog::Select(int id, int index) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->selected = index >= 0 && index < int(control->items.size()) ? index : -1;
  Update(id);
}

int LDialog::GetSelected(int id) const {
  const LControlState* control = Find(id);
  return control ? control->selected : -1;
}

void LDialog::SetFocus(int id) {
  if (peer_) peer_->SetFocus(id);
}

void LDialog::PeerText(int id, const std::string& text) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->text = text;
  EvControl(id);
}

void LDialog::PeerChecked(int id, bool checked) {
  LControlState* control = Edit(id);
  if (!control || control->checked == checked) return;
  if (checked && control->row.kind == LControlKind::Radio) CheckRadio(*control);
  control->checked = checked;
  EvControl(id);
}

void LDialog::PeerValue(int id, int value) {
  LControlState* control = Edit(id);
  if (!control) return;
  control->value = std::max(control->row.low, std::min(value, control->row.high));
  EvControl(id);
}

void LDialog::PeerSelected(int id, int index) {
  LControlState* control = Edit(id);
  if (!control || index >= int(control->items.size())) return;
  control->selected = std::max(-1, index);
  EvControl(id);
}
