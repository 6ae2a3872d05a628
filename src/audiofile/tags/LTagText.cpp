#include "audiofile/tags/LTagText.h"

#include <cstdint>

namespace {

constexpr std::uint32_t kByteOrderMark = 0xFEFF, kReplacement = 0xFFFD;

unsigned Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

void AppendUtf8(std::string& out, std::uint32_t code) {
  if (code < 0x80) {
    out += char(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
  out += char(kLead[more] | code >> (6 * more));
  for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) out += char(0x80 | (code >> shift & 0x3F));
}

// Of a sequence that starts at `at`: 0 if it is none. Overlong forms, surrogates and codes beyond Unicode are none.
std::size_t Utf8Length(std::string_view text, std::size_t at) {
  const unsigned lead = Byte(text, at);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) return 0;
  std::uint32_t code = lead & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((Byte(text, at + i) & 0xC0) != 0x80) return 0;
    code = code << 6 | (Byte(text, at + i) & 0x3F);
  }
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  return code < kLeast[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000) ? 0 : length;
}

bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

class Utf16Reader {
 public:
  Utf16Reader(std::string_view bytes, bool bigEndian) : bytes_(bytes), bigEndian_(bigEndian) {}

  std::size_t GetUsed() const { return at_; }
  bool AtEnd() const { return bytes_.size() - at_ < 2; }
  bool Skip(std::uint32_t unit) {
    if (AtEnd() || Unit() != unit) return false;
    at_ += 2;
    return true;
  }
  void SwapBytes() { bigEndian_ = !bigEndian_; }

  std::uint32_t Next() {
    const std::uint32_t unit = Unit();
    at_ += 2;
    if (IsHighSurrogate(unit) && !AtEnd() && IsLowSurrogate(Unit())) {
      const std::uint32_t low = Unit();
      at_ += 2;
      return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    return IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit;
  }

 private:
  std::uint32_t Unit() const {
    const unsigned first = Byte(bytes_, at_), second = Byte(bytes_, at_ + 1);
    return bigEndian_ ? first << 8 | second : second << 8 | first;
  }

  std::string_view bytes_;
  bool bigEndian_;
  std::size_t at_ = 0;
};

std::size_t ReadUtf16(std::string& out, std::string_view bytes, bool bigEndian, bool marked) {
  Utf16Reader reader(bytes, bigEndian);
  constexpr std::uint32_t kSwappedMark = 0xFFFE;
  if (marked && reader.Skip(kSwappedMark)) {
    reader.SwapBytes();
  } else {
    reader.Skip(kByteOrderMark);
  }
  while (!reader.AtEnd()) {
    const std::uint32_t code = reader.Next();
    if (code == 0) return reader.GetUsed();
    AppendUtf8(out, code);
  }
  return bytes.size();
}

}  // namespace

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = Utf8Length(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string Latin1ToUtf8(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size() && text[at] != 0; ++at) AppendUtf8(out, Byte(text, at));
  return out;
}

std::string TextToUtf8(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (!IsUtf8(text)) return Latin1ToUtf8(text);
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return std::string(text.substr(text.substr(0, kMark.size()) == kMark ? kMark.size() : 0));
}

std::size_t ReadID3String(std::string& out, unsigned char encoding, std::string_view bytes) {
  out.clear();
  if (encoding == lieUtf16) return ReadUtf16(out, bytes, false, true);
  if (encoding == lieUtf16BigEndian) return ReadUtf16(out, bytes, true, false);
  out = encoding == lieUtf8 ? TextToUtf8(bytes) : Latin1ToUtf8(bytes);
  const std::size_t terminator = bytes.find('\0');
  return terminator == std::string_view::npos ? bytes.size() : terminator + 1;
}
