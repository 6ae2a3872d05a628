// XML as people write it; what was read without an error must come back from what is written of it.
#include <cstdint>
#include <cstdlib>

#include "foundation/LXMLLoader.h"

namespace {

// Texts of blanks are not written.
const LXMLElement* Written(const LXMLElement* node) {
  while (node && node->IsText() && node->GetText().find_first_not_of(" \n\r") == std::string_view::npos)
    node = node->Next();
  return node;
}

bool IsSame(const LXMLElement& a, const LXMLElement& b) {
  if (a.GetKind() != b.GetKind() || a.GetName() != b.GetName() || a.GetText() != b.GetText() ||
      a.Attributes() != b.Attributes())
    return false;
  const LXMLElement *x = Written(a.FirstChild()), *y = Written(b.FirstChild());
  for (; x && y; x = Written(x->Next()), y = Written(y->Next()))
    if (!IsSame(*x, *y)) return false;
  return !x && !y;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  LXMLDocument document;
  LXMLLoader loader(document, {reinterpret_cast<const char*>(bytes), size});
  document.LoadData(loader);
  for (const int depth : {-1, 0}) {
    std::string saved;
    document.SaveToBuffer(saved, depth);
    if (!loader.GetError().empty()) continue;
    LXMLDocument again;
    LXMLLoader second(again, saved);
    again.LoadData(second);
    if (!second.GetError().empty() || !IsSame(document, again)) std::abort();
  }
  return 0;
}
