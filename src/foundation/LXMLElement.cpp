#include "foundation/LXMLElement.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "foundation/LXMLText.h"

namespace {

struct TMarker {
  LXMLElement::Kind kind;
  const char *name, *end;
};
constexpr TMarker kMarkers[] = {
    {LXMLElement::Kind::Comment, "!--", "-->"},
    {LXMLElement::Kind::Section, "![CDATA[", "]]>"},
    {LXMLElement::Kind::DocType, "!DOCTYPE", ">"},
};

const TMarker* MarkerOf(LXMLElement::Kind kind) {
  const auto found = std::find_if(std::begin(kMarkers), std::end(kMarkers), [&](auto& m) { return m.kind == kind; });
  return found == std::end(kMarkers) ? nullptr : found;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32; }

void AppendCharacterEntity(std::string& buffer, char c) {
  buffer.append("&#").append(std::to_string(static_cast<unsigned char>(c))) += ';';
}

// The reader takes a carriage return for a line feed.
void SaveValue(std::string& buffer, std::string_view value) {
  for (std::size_t at = 0;;) {
    const std::size_t next = value.find('\r', at);
    LHTMLEncodeToWriterSimple(buffer, value.substr(at, next - at));
    if (next == std::string_view::npos) return;
    AppendCharacterEntity(buffer, '\r');
    at = next + 1;
  }
}

// The reader drops control characters at the ends of a text.
void SaveText(std::string& buffer, std::string_view text) {
  for (; !text.empty() && IsControl(text.front()); text.remove_prefix(1)) AppendCharacterEntity(buffer, text.front());
  std::size_t end = text.size();
  while (end > 0 && IsControl(text[end - 1])) --end;
  SaveValue(buffer, text.substr(0, end));
  for (const char c : text.substr(end)) AppendCharacterEntity(buffer, c);
}

// A name with characters that end names stands in quotes.
void SaveName(std::string& buffer, std::string_view name) {
  if (name.find_first_of("\t\n\r /=>\"'&<") == std::string_view::npos) {
    buffer += name;
  } else {
    buffer += '"';
    SaveValue(buffer, name);
    buffer += '"';
  }
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \n\r") == std::string_view::npos; }

void Indent(std::string& buffer, int depth) { buffer.append(std::size_t(std::max(depth, 0)), '\t'); }

void EndLine(std::string& buffer, int depth) {
  if (depth >= 0) buffer += '\n';
}

}  // namespace

std::string_view LXMLElement::GetName() const {
  if (kind_ == Kind::Element) return Bytes();
  const TMarker* marker = MarkerOf(kind_);
  return marker ? marker->name : "";
}

const LHashTable& LXMLElement::Attributes() const {
  static const LHashTable none;
  return attributes_ ? *attributes_ : none;
}

const LXMLElement* LXMLElement::GetElement(std::string_view name) const {
  const LXMLElement* child = FirstChild();
  while (child && (child->IsText() || child->GetName() != name)) child = child->Next();
  return child;
}

LXMLElement* LXMLElement::GetElement(std::string_view name) {
  return const_cast<LXMLElement*>(std::as_const(*this).GetElement(name));
}

std::string_view LXMLElement::GetElementData() const {
  const LXMLElement* child = FirstChild();
  while (child && !child->IsText()) child = child->Next();
  return child ? child->GetText() : std::string_view();
}

bool LXMLElement::HasOnlyTexts() const {
  const LXMLElement* child = FirstChild();
  while (child && child->IsText()) child = child->Next();
  return !child;
}

void LXMLElement::SaveChildren(std::string& buffer, int depth) const {
  for (const LXMLElement* child = FirstChild(); child; child = child->Next()) child->SaveToBuffer(buffer, depth);
}

void LXMLElement::SaveAttributes(std::string& buffer) const {
  const auto save = [&](const std::string& name, const std::string& value) {
    buffer += ' ';
    SaveName(buffer, name);
    buffer += "=\"";
    SaveValue(buffer, value);
    buffer += '"';
  };
  constexpr const char* kFirst = "version";  // of "?xml"
  const bool isProlog = GetName() == "?xml";
  if (const char* version = Attributes().GetParm(kFirst); version && isProlog) save(kFirst, version);
  for (const auto& [name, value] : Attributes())
    if (!isProlog || name != kFirst) save(name, value);
}

void LXMLElement::SaveToBuffer(std::string& buffer, int depth) const {
  if (kind_ == Kind::Document) return SaveChildren(buffer, depth);
  if (IsText() && IsBlank(Bytes())) return;
  Indent(buffer, depth);
  if (IsText()) {
    SaveText(buffer, Bytes());
    return EndLine(buffer, depth);
  }
  buffer += '<';
  if (const TMarker* marker = MarkerOf(kind_)) {
    buffer.append(marker->name).append(Bytes()).append(marker->end);
    return EndLine(buffer, depth);
  }
  SaveName(buffer, Bytes());
  SaveAttributes(buffer);
  const char first = size_ ? bytes_[0] : '\0';
  if (!lastChild_) {
    buffer += first == '?' ? "?>" : first == '!' ? ">" : "/>";
    return EndLine(buffer, depth);
  }
  buffer += '>';
  if (HasOnlyTexts()) {
    SaveChildren(buffer, -1);
  } else {
    EndLine(buffer, depth);
    SaveChildren(buffer, depth < 0 ? depth : depth + 1);
    Indent(buffer, depth);
  }
  buffer += "</";
  SaveName(buffer, Bytes());
  buffer += '>';
  EndLine(buffer, depth);
}

std::string_view LXMLDocument::Copy(std::string_view text) {
  if (text.empty()) return "";
  auto* bytes = static_cast<char*>(nodes_.allocate(text.size(), 1));
  std::memcpy(bytes, text.data(), text.size());
  return {bytes, text.size()};
}

LXMLElement& LXMLDocument::Add(LXMLElement& parent, Kind kind, std::string_view kept) {
  auto* node = new (nodes_.allocate(sizeof(LXMLElement), alignof(LXMLElement))) LXMLElement(kind);
  node->bytes_ = kept.data();
  node->size_ = std::uint32_t(std::min<std::size_t>(kept.size(), std::numeric_limits<std::uint32_t>::max()));
  node->preservesSpace_ = parent.preservesSpace_;
  if (LXMLElement* last = parent.lastChild_) {
    node->next_ = last->next_;
    last->next_ = node;
    last->isLast_ = false;
  }
  parent.lastChild_ = node;
  return *node;
}

LXMLElement& LXMLDocument::AddElement(LXMLElement& parent, std::string_view name) {
  return Add(parent, Kind::Element, Copy(name));
}

LXMLElement& LXMLDocument::AddText(LXMLElement& parent, std::string_view text) {
  return Add(parent, Kind::Text, Copy(text));
}

LHashTable& LXMLDocument::AttributesOf(LXMLElement& element) {
  if (!element.attributes_) element.attributes_ = &tables_.emplace_back();
  return *element.attributes_;
}

void LXMLDocument::SetAttribute(LXMLElement& element, std::string_view name, std::string_view value) {
  AttributesOf(element).SetParmBottom(name, value);
}
