#include "toolkit/LWindow.h"

#include <algorithm>

LWindow::LWindow(LWindow* parent, int id) : parent_(parent), id_(id) {
  if (parent_) parent_->children_.push_back(this);
}

LWindow::~LWindow() {
  if (parent_) std::erase(parent_->children_, this);
  for (LWindow* child : children_) child->parent_ = nullptr;
}

LWindow* LWindow::FindChild(int id) {
  for (LWindow* child : children_) {
    if (child->id_ == id) return child;
    if (LWindow* found = child->FindChild(id)) return found;
  }
  return nullptr;
}

void LWindow::SetVisible(bool visible) {
  visible_ = visible;
  peer_->SetVisible(visible);
}

bool LWindow::IsWindowVisible() const {
  const LWindow* window = this;
  while (window && window->visible_) window = window->parent_;
  return window == nullptr;
}

void LWindow::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  peer_->SetEnabled(enabled);
}

void LWindow::SetBounds(const LRect& bounds) {
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  peer_->SetBounds(bounds);
  if (resized) EvResize(bounds.width, bounds.height);
}

void LWindow::PeerBounds(const LRect& bounds) {
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  if (resized) EvResize(bounds.width, bounds.height);
}

void LWindow::SetText(const std::string& text) {
  if (text_ == text) return;
  text_ = text;
  peer_->SetText(text);
}

void LWindow::SetToolTip(const std::string& text) {
  if (toolTip_ == text) return;
  toolTip_ = text;
  peer_->SetToolTip(text);
}

void LWindow::SetAccessibleName(const std::string& name) {
  if (accessibleName_ == name) return;
  accessibleName_ = name;
  peer_->SetAccessibleName(name);
}

bool LWindow::EvKeyDown(LKey key) { return parent_ && parent_->EvKeyDown(key); }

bool LWindow::EvKeyRepeat(LKey key) { return parent_ && parent_->EvKeyRepeat(key); }

void LWindow::EvKeyUnused(LKey key) {
  if (parent_) parent_->EvKeyUnused(key);
}

bool LWindow::EvDropFiles(const LDroppedFileData& files) {
  if (!parent_) return false;
  LDroppedFileData moved = files;
  moved.where = {files.where.x + bounds_.x, files.where.y + bounds_.y};
  return parent_->EvDropFiles(moved);
}
