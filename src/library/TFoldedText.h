// Text in the form in which it is searched and sorted: lower case in every script, other bytes as they are.
// Threads  [any]
#pragma once
#include <string>
#include <string_view>

void AppendFoldedText(std::string& out, std::string_view text);
inline std::string FoldedText(std::string_view text) {
  std::string folded;
  AppendFoldedText(folded, text);
  return folded;
}
