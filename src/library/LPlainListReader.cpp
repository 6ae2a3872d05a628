#include "library/LPlainListReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t kWindowBytes = 256 * 1024;
constexpr std::size_t kMaxNameBytes = 255;
constexpr std::size_t kMaxEntityBytes = 8;
constexpr std::string_view kHead = "<playlist>\n\n", kTail = "</playlist>\n";
constexpr std::string_view kItemHead = "\t<playitem>\n", kItemTail = "\t</playitem>\n\n";

struct Entity {
  std::string_view name;
  char character;
};
constexpr Entity kEntities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

// What ends a run of a value's plain characters: the next tag, an entity, and what the XML reader has rules of its own for.
constexpr std::array<bool, 256> kStops = [] {
  std::array<bool, 256> stops{};
  for (const char c : {'<', '&', '\r', '\0'}) stops[static_cast<unsigned char>(c)] = true;
  return stops;
}();

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32; }
bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

}  // namespace

LPlainListReader::LPlainListReader(LFileHandle file) : file_(std::move(file)), window_(kWindowBytes, '\0') {}

bool LPlainListReader::Fill() {
  if (begin_ == 0 && end_ == window_.size()) window_.resize(window_.size() * 2);  // one item larger than the window
  std::memmove(window_.data(), window_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const auto got = file_.IsOpen() ? file_.Read(window_.data() + end_, window_.size() - end_) : 0;
  if (got > 0) end_ += std::size_t(got);
  return got > 0;
}

LPlainListReader::Result LPlainListReader::Next(LPlayItem& item) {
  for (;;) {
    bool isEnd = false;
    at_ = begin_;
    Step step = headRead_ ? ReadItem(item, isEnd) : ReadHead();
    if (step == NeedsMore && Fill()) continue;
    if (step != Done) return Refused;
    begin_ = at_;
    if (!std::exchange(headRead_, true)) continue;
    if (!isEnd) return Item;
    return begin_ == end_ && !Fill() ? End : Refused;
  }
}

LPlainListReader::Step LPlainListReader::Expect(std::string_view text) {
  const std::size_t there = std::min(text.size(), end_ - at_);
  if (std::string_view(window_).substr(at_, there) != text.substr(0, there)) return Foreign;
  if (there < text.size()) return NeedsMore;
  at_ += there;
  return Done;
}

LPlainListReader::Step LPlainListReader::ReadHead() { return Expect(kHead); }

LPlainListReader::Step LPlainListReader::ReadItem(LPlayItem& item, bool& isEnd) {
  if (const Step step = Expect(kItemHead); step != Done) {
    isEnd = true;
    return step == Foreign ? Expect(kTail) : step;
  }
  item = {};
  for (;;) {
    const Step tail = Expect(kItemTail);
    if (tail != Foreign) return tail;
    if (const Step step = ReadField(item); step != Done) return step;
  }
}

LPlainListReader::Step LPlainListReader::ReadField(LPlayItem& item) {
  if (const Step step = Expect("\t\t<"); step != Done) return step;
  if (const Step step = ReadName(); step != Done) return step;
  if (const Step step = ReadValue(); step != Done) return step;
  for (const std::string_view part : {std::string_view("</"), std::string_view(name_), std::string_view(">\n")})
    if (const Step step = Expect(part); step != Done) return step;
  if (name_ == "path") {
    item.path = value_;
  } else {
    item.fields.SetString(name_, value_);
  }
  return Done;
}

LPlainListReader::Step LPlainListReader::ReadName() {
  const char* begin = window_.data() + at_;
  const char* end = std::find_if_not(begin, begin + std::min(end_ - at_, kMaxNameBytes), IsNameCharacter);
  name_.assign(begin, end);
  at_ += name_.size();
  const Step step = Expect(">");
  return step == Done && name_.empty() ? Foreign : step;
}

LPlainListReader::Step LPlainListReader::ReadValue() {
  value_.clear();
  const std::size_t first = at_;
  for (;;) {
    const char* begin = window_.data() + at_;
    const char* end = std::find_if(begin, static_cast<const char*>(window_.data()) + end_,
                                   [](char c) { return kStops[static_cast<unsigned char>(c)]; });
    value_.append(begin, end);
    at_ += std::size_t(end - begin);
    if (at_ == end_) return NeedsMore;
    if (*end == '&') {
      if (const Step step = ReadEntity(); step != Done) return step;
      continue;
    }
    if (*end != '<') return Foreign;
    // Unescaped control characters at its ends are no part of a text.
    const bool trims = at_ > first && (IsControl(window_[first]) || IsControl(window_[at_ - 1]));
    return trims ? Foreign : Done;
  }
}

LPlainListReader::Step LPlainListReader::ReadEntity() {
  const std::string_view rest = std::string_view(window_).substr(at_ + 1, std::min(end_ - at_ - 1, kMaxEntityBytes));
  const auto semicolon = rest.find(';');
  if (semicolon == std::string_view::npos) return rest.size() == kMaxEntityBytes ? Foreign : NeedsMore;
  const std::string_view name = rest.substr(0, semicolon);
  at_ += semicolon + 2;
  for (const Entity& entity : kEntities) {
    if (entity.name != name) continue;
    value_ += entity.character;
    return Done;
  }
  int code = 0;
  if (name.empty() || name[0] != '#') return Foreign;
  const auto [end, error] = std::from_chars(name.data() + 1, name.data() + name.size(), code);
  if (error != std::errc{} || end != name.data() + name.size() || code < 1 || code > 127) return Foreign;
  value_ += char(code);
  return Done;
}
