// The base of everything with a place on the screen: state, children, and a peer that shows it.
// Law      keys and dropped files go to the window that has them; what it leaves goes to its parent. Children are
//          observed, not owned: they are members of the classes that use them.
// Units    device-independent pixels; bounds are relative to the parent.
// Threads  [main]
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "foundation/LKey.h"
#include "toolkit/LDroppedFileData.h"
#include "toolkit/LWindowPeer.h"

class LWindow {
 public:
  virtual ~LWindow();
  LWindow(const LWindow&) = delete;
  LWindow& operator=(const LWindow&) = delete;

  int Id() const { return id_; }
  LWindow* Parent() const { return parent_; }  // null for a top-level window
  const std::vector<LWindow*>& Children() const { return children_; }
  LWindow* FindChild(int id);  // at any depth, null if there is none
  LWindowPeer& Peer() { return *peer_; }

  void SetVisible(bool visible);
  bool IsVisible() const { return visible_; }
  bool IsWindowVisible() const;  // itself and all above it
  void SetEnabled(bool enabled);
  bool IsEnabled() const { return enabled_; }
  void SetBounds(const LRect& bounds);
  const LRect& Bounds() const { return bounds_; }
  int Width() const { return bounds_.width; }
  int Height() const { return bounds_.height; }
  void SetText(const std::string& text);
  const std::string& GetText() const { return text_; }
  void SetToolTip(const std::string& text);
  const std::string& GetToolTip() const { return toolTip_; }
  void SetAccessibleName(const std::string& name);
  const std::string& GetAccessibleName() const { return accessibleName_; }
  void SetFocus() { peer_->SetFocus(); }
  void Redraw() { peer_->Redraw({}); }
  void Redraw(const LRect& box) {
    if (!box.IsEmpty()) peer_->Redraw(box);
  }

  // True: used. The base passes each on to the parent, places translated.
  virtual bool EvKeyDown(LKey key);
  virtual bool EvKeyRepeat(LKey key);
  virtual void EvKeyUnused(LKey key);  // after nobody took it
  virtual bool EvDropFiles(const LDroppedFileData& files);
  virtual void EvDragHover(bool /*over*/) {}  // files are held over this window, or no longer
  virtual void EvResize(int /*w*/, int /*h*/) {}

  void PeerBounds(const LRect& bounds);  // the peer tells that the user or the system moved the window

 protected:
  LWindow(LWindow* parent, int id);
  void SetPeer(std::unique_ptr<LWindowPeer> peer) { peer_ = std::move(peer); }

 private:
  LWindow* parent_;
  std::vector<LWindow*> children_;
  int id_;
  bool visible_ = true, enabled_ = true;
  LRect bounds_;
  std::string text_, toolTip_, accessibleName_;
  std::unique_ptr<LWindowPeer> peer_;  // set by the constructor of each concrete class
};
