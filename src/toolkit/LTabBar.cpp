#include "toolkit/LTabBar.h"

#include <algorithm>

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

LTabBar::LTabBar(LWindow& parent, int id) : LWindow(&parent, id) {
  auto peer = LPlatform::Toolkit().NewTabBar(*this);
  bar_ = peer.get();
  SetPeer(std::move(peer));
}

void LTabBar::AddTab(const std::string& text, int tag, bool closable) {
  tabs_.push_back({text, tag, closable});
  if (selected_ < 0) selected_ = tag;
  bar_->Rebuild();
}

void LTabBar::RemoveTab(int tag) {
  const auto found = std::find_if(tabs_.begin(), tabs_.end(), [tag](const Tab& tab) { return tab.tag == tag; });
  if (found == tabs_.end()) return;
  const auto next = tabs_.erase(found);
  if (selected_ == tag) selected_ = tabs_.empty() ? -1 : next == tabs_.end() ? tabs_.back().tag : next->tag;
  bar_->Rebuild();
}

void LTabBar::SelectTab(int tag) {
  if (tag == selected_ || std::none_of(tabs_.begin(), tabs_.end(), [tag](const Tab& tab) { return tab.tag == tag; }))
    return;
  selected_ = tag;
  bar_->ShowSelection();
}

void LTabBar::PeerSelected(int tag) {
  if (tag == selected_) return;
  selected_ = tag;
  EvTabChanged(tag);
}
