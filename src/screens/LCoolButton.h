// A button of the panels: an icon or a text, lit in a colour while it is on. A click sends its command to the host.
// Units    device-independent pixels
// Threads  [main]
#pragma once
#include <string>

#include "screens/DJPanelHost.h"
#include "toolkit/LPaintControl.h"

class LCoolButton final : public LPaintControl {
 public:
  enum class Icon { None, Play, Pause, ToStart, Headphones, Record, Shield, Microphone, Folder };

  LCoolButton(LWindow& parent, DJPanelHost& host, int command, Icon icon, const std::string& name, LGuiColor lit);

  void SetOn(bool on);
  bool IsOn() const { return on_; }
  void SetIcon(Icon icon);
  void SetCaption(const std::string& caption);  // beside the icon
  void ShowKeyInToolTip();                      // the button's name with the key of its command
  const std::string& GetCaption() const { return caption_; }
  int BestWidth() const;  // at which the caption is whole

  void EvPaint(LPaintContext& context) override;
  void EvMouseDown(const LMouseEvent& event) override;
  void EvMouseUp(const LMouseEvent& event) override;
  void EvHover(bool) override { Redraw(); }

 private:
  struct Look {
    LGuiColor ground, ink;
  };
  Look GetLook() const;
  void DrawIcon(LPaintContext& context, const LRect& box, LGuiColor colour) const;

  DJPanelHost& host_;
  Icon icon_;
  LGuiColor lit_;
  std::string caption_;
  bool on_ = false;
};
