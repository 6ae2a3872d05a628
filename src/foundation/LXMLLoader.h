// Reads XML text into a document. It is no validating parser: it takes what people and other programs write, keeps the
// first error and goes on where it can, so that the tree holds whatever could be read.
// Units    lines and columns of the error count from 1, columns in characters; CR, LF and a pair of them end one line.
// Threads  that of the document.
// Failure  the error "Ln %d, Col %d: %s", empty if there was none. Elements nested deeper than kMaxDepth are read as
//          empty. The text ends at its first zero byte.
#pragma once
#include <string>
#include <string_view>

#include "foundation/LXMLElement.h"

class LProcessInterface;

class LXMLLoader {
 public:
  static constexpr int kMaxDepth = 200;
  static constexpr std::size_t kMaxNameBytes = 259;
  static constexpr std::size_t kMaxErrorBytes = 259;

  // The document keeps the text and takes the nodes; it may hold what earlier loaders read.
  LXMLLoader(LXMLDocument& document, std::string text, LProcessInterface* process = nullptr);

  const std::string& GetError() const { return error_; }
  bool WasStopped() const { return stopped_; }

 private:
  friend class LXMLElement;

  void LoadChildren(LXMLElement& parent, int depth);
  LXMLElement* LoadStartTag(LXMLElement& parent, std::string_view name, char stop);
  void LoadMarked(LXMLElement& parent, LXMLElement::Kind kind);
  bool LoadAttributes(LXMLElement& element, char stop);
  bool TakePlainEndTag(const LXMLElement& parent);
  void LoadEndTag(const LXMLElement& parent);
  void SkipContent();
  void AddText(LXMLElement& parent, std::string_view run);

  char XMLLoadTag(std::string_view& name);
  char LoadUnusualName(std::string_view& name);
  char XMLLoadAttribute();
  void XMLAmpChar(std::string& out);

  std::string_view Rest() const { return text_.substr(std::size_t(at_ - text_.data())); }
  char TakeStop();
  void SkipBlanks();
  void SkipPastEndOfTag();
  bool IsToStop();
  void SetError(const std::string& text);

  LXMLDocument& document_;
  LProcessInterface* process_;  // null: nobody asks to stop
  std::string_view text_;       // ends in a zero byte; lines end in LF only
  const char* at_ = nullptr;
  std::size_t nextAsk_ = 0;  // offset at which to ask whether to stop
  bool stopped_ = false;
  std::string error_;
  std::string gathered_;       // text with decoded characters in it
  std::size_t keptBegin_ = 0;  // of gathered_: from the first to behind the last decoded character
  std::size_t keptEnd_ = 0;
  std::string value_;  // of an attribute
};
