// Several dialogs as pages of one window, with one OK.
// Law      OK asks CmOk of every page in order; the first that refuses comes to the front and keeps the sheet open.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

#include "toolkit/LDialog.h"

class LPropertySheet {
 public:
  explicit LPropertySheet(std::string title) : title_(std::move(title)) {}
  virtual ~LPropertySheet() = default;
  LPropertySheet(const LPropertySheet&) = delete;
  LPropertySheet& operator=(const LPropertySheet&) = delete;

  void AddPage(LDialog& page) { pages_.push_back(&page); }  // its title names it; it outlives Run
  const std::vector<LDialog*>& Pages() const { return pages_; }
  const std::string& Title() const { return title_; }
  void SelectPage(int index);
  int SelectedPage() const { return selected_; }

  int Run(LWindow* parent = nullptr);  // LDialog::kOk or kCancel
  void Press(int id);                  // LDialog::kOk or kCancel
  bool IsEnded() const { return ended_; }

  virtual void EvPageChanged(int /*index*/) {}

 private:
  std::string title_;
  std::vector<LDialog*> pages_;
  int selected_ = 0, result_ = LDialog::kCancel;
  bool ended_ = false;
};
