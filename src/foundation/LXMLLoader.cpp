#include "foundation/LXMLLoader.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "foundation/LProcessInterface.h"
#include "foundation/LText.h"
#include "foundation/LXMLText.h"

namespace {

constexpr std::size_t kAskEveryBytes = 512;
constexpr std::size_t kMaxEntityBytes = 23;

constexpr const char* kUnterminatedEntity =
    "Zeichenfolgen, die mit kaufmännischem Und-Zeichen (&) beginnen, müssen mit Semikolon (;) enden. Entweder ersetzen "
    "Sie das '&' mit '&amp;' oder fügen ein ';' am Ende der Steuerungszeichenfolge...";
constexpr const char* kUnterminatedElement =
    "(EOF) Element <%s> should be terminated with </%s>. Check you have terminated your element properly.";
constexpr const char* kWrongEndTag =
    "Element <%s> should be terminated with </%s>, was with %s. Check you have terminated your element properly.";
constexpr const char* kMisplacedEndTag = "Misplaced </%s> which does not match a <%s>.";
constexpr const char* kNamelessTag = "Deplatziertes < ohne Namen. Benutzen Sie &lt; anstatt von < wenn angebracht.";
constexpr const char* kUnclosedTag = "Tag <%s> hat kein schließendes '>'";
constexpr const char* kTooDeep = "zu tief verschachtelt";

enum CharacterClass : unsigned char { kBlank = 1, kEndsText = 2, kEndsName = 4, kUnusualInName = 8 };

constexpr auto kClasses = [] {
  std::array<unsigned char, 256> classes{};
  const auto mark = [&](std::string_view characters, unsigned bits) {
    for (const char c : characters) classes[static_cast<unsigned char>(c)] |= static_cast<unsigned char>(bits);
  };
  mark({"\0", 1}, kEndsText | kEndsName);
  mark("<&", kEndsText);
  mark("\t\n ", kBlank | kEndsName);
  mark("/=>", kEndsName);
  mark("\"'&", kUnusualInName);
  return classes;
}();

bool Is(char c, unsigned classes) { return kClasses[static_cast<unsigned char>(c)] & classes; }

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32; }

const struct {
  std::string_view name;
  LXMLElement::Kind kind;
} kMarkers[] = {{"!--", LXMLElement::Kind::Comment},
                {"!DOCTYPE", LXMLElement::Kind::DocType},
                {"![CDATA[", LXMLElement::Kind::Section}};

LXMLElement::Kind KindOfName(std::string_view name) {
  if (!name.starts_with('!')) return LXMLElement::Kind::Element;
  for (const auto& marker : kMarkers)
    if (name == marker.name) return marker.kind;
  return LXMLElement::Kind::Element;
}

constexpr struct {
  std::string_view name;
  char character;
} kEntities[] = {{"amp", '&'}, {"gt", '>'}, {"lt", '<'}, {"quot", '"'}, {"apos", '\''}};

// Nothing for a zero, a replacement character for a number beyond all characters, '&' for what is no number.
void AppendNumbered(std::string& out, std::string_view digits, int base) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  if (error == std::errc::result_out_of_range) {
    LAppendUtf8(out, 0xFFFFFFFF);
  } else if (error != std::errc() || end != digits.data() + digits.size()) {
    out += '&';
  } else if (number != 0) {
    LAppendUtf8(out, number);
  }
}

void AppendEntity(std::string& out, std::string_view name) {
  if (name.starts_with("#x") || name.starts_with("#X")) return AppendNumbered(out, name.substr(2), 16);
  if (name.starts_with("#")) return AppendNumbered(out, name.substr(1), 10);
  for (const auto& entity : kEntities)
    if (name == entity.name) return void(out += entity.character);
  out += '&';
}

void LeaveLineFeedsOnly(std::string& text) {
  text.resize(std::min(text.find('\0'), text.size()));
  const std::size_t first = text.find('\r');
  if (first == std::string::npos) return;
  std::size_t to = first && text[first - 1] == '\n' ? first - 1 : first;
  for (std::size_t from = to; from < text.size(); ++from) {
    const char c = text[from];
    const bool endsLine = c == '\r' || c == '\n';
    if (endsLine && from + 1 < text.size() && text[from + 1] == (c == '\r' ? '\n' : '\r')) ++from;
    text[to++] = endsLine ? '\n' : c;
  }
  text.resize(to);
}

}  // namespace

void LXMLElement::LoadData(LXMLLoader& loader) {
  lastChild_ = nullptr;
  loader.LoadChildren(*this, 0);
}

LXMLLoader::LXMLLoader(LXMLDocument& document, std::string text, LProcessInterface* process)
    : document_(document), process_(process) {
  LeaveLineFeedsOnly(text);
  text_ = document.Keep(std::move(text));
  at_ = text_.data();
}

// Only the first error is told, so the place is counted then and not with each character.
void LXMLLoader::SetError(const std::string& text) {
  if (!error_.empty() || stopped_) return;
  const std::string_view read(text_.data(), std::size_t(at_ - text_.data()));
  const auto line = 1 + std::count(read.begin(), read.end(), '\n');
  const std::string_view rest = read.substr(read.rfind('\n') + 1);  // npos + 1 is 0
  const auto column = 1 + std::count_if(rest.begin(), rest.end(), [](char c) { return (c & 0xC0) != 0x80; });
  error_ = LText::CutUtf8(LText::Format("Ln %d, Col %d: %s", int(line), int(column), text.c_str()), kMaxErrorBytes);
}

bool LXMLLoader::IsToStop() {
  const auto offset = std::size_t(at_ - text_.data());
  if (process_ && !stopped_ && offset >= nextAsk_) {
    nextAsk_ = offset + kAskEveryBytes;
    stopped_ = process_->IsToStop();
  }
  return stopped_;
}

// The character at the position; the position moves on unless it is the end of the text.
char LXMLLoader::TakeStop() { return *at_ ? *at_++ : '\0'; }

void LXMLLoader::SkipBlanks() {
  while (Is(*at_, kBlank)) ++at_;
}

void LXMLLoader::SkipPastEndOfTag() {
  while (*at_ && *at_ != '>') ++at_;
  TakeStop();
}

void LXMLLoader::LoadChildren(LXMLElement& parent, int depth) {
  while (!IsToStop()) {
    const char* const start = at_;
    while (!Is(*at_, kEndsText)) ++at_;
    const std::string_view run(start, std::size_t(at_ - start));
    const char stop = TakeStop();
    if (stop == '&') {
      gathered_ += run;
      if (keptEnd_ == 0) keptBegin_ = gathered_.size();
      XMLAmpChar(gathered_);
      keptEnd_ = gathered_.size();
      continue;
    }
    AddText(parent, run);
    if (*at_ == '/' && TakePlainEndTag(parent)) return;
    if (stop == '\0') {
      const std::string name(parent.GetName());
      if (!name.empty()) SetError(LText::Format(kUnterminatedElement, name.c_str(), name.c_str()));
      return;
    }
    std::string_view name;
    const char nameStop = XMLLoadTag(name);
    if (!name.empty()) {
      LXMLElement* child = LoadStartTag(parent, name, nameStop);
      if (!child) continue;
      if (depth < kMaxDepth) {
        LoadChildren(*child, depth + 1);
      } else {
        SetError(kTooDeep);
        SkipContent();
      }
    } else if (nameStop == '/') {
      return LoadEndTag(parent);
    } else {
      SetError(kNamelessTag);
    }
  }
}

// Control characters at the ends are indentation; those that stood as entities are meant.
void LXMLLoader::AddText(LXMLElement& parent, std::string_view run) {
  const bool isRaw = gathered_.empty();
  if (!isRaw) gathered_ += run;
  std::string_view text = isRaw ? run : gathered_;
  if (!parent.preservesSpace_) {
    const std::size_t keptBegin = isRaw || !keptEnd_ ? text.size() : keptBegin_, keptEnd = isRaw ? 0 : keptEnd_;
    std::size_t begin = 0, end = text.size();
    while (begin < keptBegin && IsControl(text[begin])) ++begin;
    while (end > begin && end > keptEnd && IsControl(text[end - 1])) --end;
    text = text.substr(begin, end - begin);
  }
  if (!text.empty()) document_.Add(parent, LXMLElement::Kind::Text, isRaw ? text : document_.Copy(text));
  gathered_.clear();
  keptBegin_ = keptEnd_ = 0;
}

// The element if content follows it, else null.
LXMLElement* LXMLLoader::LoadStartTag(LXMLElement& parent, std::string_view name, char stop) {
  if (const auto kind = KindOfName(name); kind != LXMLElement::Kind::Element) {
    LoadMarked(parent, kind);
    return nullptr;
  }
  const bool isInstruction = name[0] == '?';
  if (isInstruction && stop == '>' && name.size() > 1 && name.back() == '?') name.remove_suffix(1);
  LXMLElement& element = document_.Add(parent, LXMLElement::Kind::Element, name);
  const bool isEmpty = stop != '>' && LoadAttributes(element, stop);
  return isEmpty || isInstruction || name[0] == '!' ? nullptr : &element;
}

// A comment, a section or a document type, to its end; the last may hold tags of its own.
void LXMLLoader::LoadMarked(LXMLElement& parent, LXMLElement::Kind kind) {
  const std::string_view rest = Rest();
  const std::string_view terminator = kind == LXMLElement::Kind::Comment ? "-->" : "]]>";
  std::size_t length = std::string_view::npos, endSize = terminator.size();
  if (kind == LXMLElement::Kind::DocType) {
    endSize = 1;
    int open = 1;
    for (std::size_t i = 0; i < rest.size() && open > 0; ++i) {
      open += rest[i] == '<' ? 1 : rest[i] == '>' ? -1 : 0;
      if (open == 0) length = i;
    }
  } else {
    length = rest.find(terminator);
  }
  const LXMLElement& node = document_.Add(parent, kind, rest.substr(0, length));
  at_ += length == std::string_view::npos ? rest.size() : length + endSize;
  if (length == std::string_view::npos) SetError(LText::Format(kUnclosedTag, std::string(node.GetName()).c_str()));
}

// True if the tag closes its element.
bool LXMLLoader::LoadAttributes(LXMLElement& element, char stop) {
  const bool isInstruction = element.GetName()[0] == '?';
  bool isEmpty = false;
  while (stop != '>' && stop != '\0') {
    if (stop == '/') isEmpty = true;
    std::string_view name;
    stop = XMLLoadTag(name);
    if (Is(stop, kBlank)) {
      SkipBlanks();
      if (*at_ == '=') stop = TakeStop();
    }
    value_.clear();
    const bool hasValue = stop == '=';
    if (hasValue) {
      SkipBlanks();
      stop = XMLLoadAttribute();
    }
    if (name == "xml:space") {
      element.preservesSpace_ = value_ == "preserve";
      continue;
    }
    if (isInstruction && stop == '>') {
      if (hasValue && value_.ends_with('?')) value_.pop_back();
      if (!hasValue && name.ends_with('?')) name.remove_suffix(1);
    }
    if (!name.empty()) document_.AttributesOf(element).SetParmBottom(name, value_);
  }
  if (stop == '\0') SetError(LText::Format(kUnclosedTag, std::string(element.GetName()).c_str()));
  return isEmpty;
}

// The usual case, a name that stands in the text as in the start tag. At the end of the text there is no slash.
bool LXMLLoader::TakePlainEndTag(const LXMLElement& parent) {
  const std::string_view name = parent.Bytes(), rest = Rest().substr(1);
  const bool stoodInText = name.data() >= text_.data() && name.data() < text_.data() + text_.size();
  if (!stoodInText || !rest.starts_with(name) || rest.size() <= name.size() || rest[name.size()] != '>') return false;
  at_ += name.size() + 2;
  return true;
}

void LXMLLoader::LoadEndTag(const LXMLElement& parent) {
  std::string_view name;
  const char stop = XMLLoadTag(name);
  if (name != parent.GetName()) {
    const std::string was(name), expected(parent.GetName());
    SetError(expected.empty() ? LText::Format(kMisplacedEndTag, was.c_str(), was.c_str())
                              : LText::Format(kWrongEndTag, expected.c_str(), expected.c_str(), was.c_str()));
  }
  if (stop != '>') SkipPastEndOfTag();
}

// Passes over the content of an element whose start tag was read, however deep it goes.
void LXMLLoader::SkipContent() {
  LXMLDocument dropped;
  for (std::size_t open = 1; open > 0 && !IsToStop();) {
    while (*at_ && *at_ != '<') ++at_;
    if (!TakeStop()) return;
    std::string_view name;
    const char stop = XMLLoadTag(name);
    if (!name.empty()) {
      if (LoadStartTag(dropped, name, stop)) ++open;
    } else if (stop == '/') {
      if (XMLLoadTag(name) != '>') SkipPastEndOfTag();
      --open;
    }
  }
}

// A name, and the character that ended it.
char LXMLLoader::XMLLoadTag(std::string_view& name) {
  const char* const start = at_;
  if (*at_ == '!') return LoadUnusualName(name);
  while (!Is(*at_, kEndsName | kUnusualInName)) ++at_;
  if (Is(*at_, kUnusualInName)) {
    at_ = start;
    return LoadUnusualName(name);
  }
  name = {start, std::min(std::size_t(at_ - start), kMaxNameBytes)};
  return TakeStop();
}

// With quotes, entities, or one of the markers, whose content follows without a blank.
char LXMLLoader::LoadUnusualName(std::string_view& name) {
  std::string gathered;
  char stop = '\0', quote = '\0';
  for (;;) {
    stop = TakeStop();
    if (stop == '\0' || (!quote && Is(stop, kEndsName))) break;
    if (stop == quote) {
      quote = '\0';
    } else if (!quote && (stop == '"' || stop == '\'')) {
      quote = stop;
    } else if (stop == '&') {
      XMLAmpChar(gathered);
    } else {
      gathered += stop;
    }
    if (gathered.size() > kMaxNameBytes) gathered.resize(kMaxNameBytes);
    if (KindOfName(gathered) != LXMLElement::Kind::Element) break;
  }
  name = document_.Copy(gathered);
  return stop;
}

// The value of an attribute into value_, and the character that ended it.
char LXMLLoader::XMLLoadAttribute() {
  char quote = '\0';
  bool wasQuoted = false;
  for (;;) {
    const bool endsTag = *at_ == '/' && (wasQuoted || at_[1] == '>');
    if (*at_ == '\0' || (!quote && (Is(*at_, kBlank) || *at_ == '>' || endsTag))) return TakeStop();
    const char c = *at_++;
    if (c == quote) {
      quote = '\0';
      wasQuoted = true;
    } else if (!quote && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == '&') {
      XMLAmpChar(value_);
    } else {
      value_ += c;
    }
  }
}

// Behind an '&': appends what the entity stands for.
void LXMLLoader::XMLAmpChar(std::string& out) {
  std::size_t length = 0;
  while (at_[length] && at_[length] != ';' && !Is(at_[length], kBlank) && length < kMaxEntityBytes) ++length;
  const std::string_view name(at_, length);
  at_ += length;
  if (TakeStop() == ';') {
    AppendEntity(out, name);
  } else {
    SetError(kUnterminatedEntity);
  }
}
