// What the panels ask of the application. It decides whether a thing is allowed and sets the panel back if not.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

#include "console/DJDeckPosition.h"
#include "sound/LSoundTime.h"
#include "sound/LdB.h"

class DJPanelHost {
 public:
  virtual void PanelCommand(int id) = 0;  // as if the menu item were picked
  virtual void PanelCrossFade(int position) = 0;
  virtual void PanelDeckVolume(DJDeckPosition deck, LLevel level) = 0;
  virtual void PanelLevels(LLevel master, LLevel headphone) = 0;
  virtual void PanelSeek(DJDeckPosition deck, int frame) = 0;
  virtual void PanelBrowse(DJDeckPosition deck) = 0;  // choose a file to load
  virtual bool PanelDrop(DJDeckPosition deck, const std::vector<std::string>& paths) = 0;

 protected:
  ~DJPanelHost() = default;
};
