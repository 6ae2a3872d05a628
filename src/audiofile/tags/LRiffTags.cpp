#include "audiofile/tags/LRiffTags.h"

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LTagText.h"
#include "foundation/LText.h"

namespace {

// visit(id, content) tells whether to go on.
template <class Visit>
void WalkChunks(const LTagBlock& list, Visit visit) {
  constexpr int kHeaderBytes = 8;
  std::int64_t at = 0;
  for (int piece = 0; piece < LTagBlock::kMaxPieces; ++piece) {
    unsigned char header[kHeaderBytes];
    if (!list.Get(header, sizeof header, at)) return;
    const std::int64_t bytes = GetLe32(header + 4);
    at += kHeaderBytes;
    if (!list.Has(at, bytes) || !visit(header, list.Part(at, bytes))) return;
    at += bytes + (bytes & 1);
  }
}

template <class Visit>
void WalkRiff(const LTagBlock& file, Visit visit) {
  constexpr int kHeaderBytes = 12;
  unsigned char header[kHeaderBytes];
  if (!file.Get(header, sizeof header, 0) || !IsId(header + 8, "WAVE")) return;
  if (IsId(header, "RIFF") || IsId(header, "RF64")) WalkChunks(file.Part(kHeaderBytes), visit);
}

LTagBlock FindRiffChunk(const LTagBlock& file, const char* id) {
  LTagBlock found;
  WalkRiff(file, [&](const unsigned char* at, const LTagBlock& chunk) {
    const bool same = IsId(at, id);
    if (same) found = chunk;
    return !same;
  });
  return found;
}

struct InfoRow {
  const char *id, *field;
};

constexpr InfoRow kInfo[] = {
    {"IPRD", "ALBUM"},     {"IART", "ARTIST"},   {"ISTR", "ALBUMARTIST"}, {"INAM", "TITLE"},
    {"ICRD", "YEAR"},      {"ICMT", "COMMENT"},  {"ITRK", "TRACKNUMBER"}, {"IGNR", "GENRE"},
    {"ICOP", "COPYRIGHT"}, {"ISRC", "PRODUCER"}, {"ISFT", "ENCODER"},     {"ISBJ", "CATEGORY"},
};

void AddInfo(LAudioTagData& tags, const LTagBlock& list) {
  WalkChunks(list, [&](const unsigned char* id, const LTagBlock& text) {
    for (const InfoRow& row : kInfo)
      if (IsId(id, row.id)) tags.SetTag(row.field, TextToUtf8(text.Read()), false);
    return true;
  });
}

// A text of fixed width that has no terminator if it fills its place.
void SetHashTableStringNotNullTerminated(LAudioTagData& tags, const char* field, const LTagBlock& place) {
  tags.SetTag(field, TextToUtf8(place.Read()), false);
}

std::int32_t GetInt32(const LTagBlock& chunk, std::int64_t at) {
  unsigned char bytes[4] = {};
  chunk.Get(bytes, sizeof bytes, at);
  return std::int32_t(GetLe32(bytes));
}

struct TextRow {
  const char* field;
  int at, width;
};

template <std::size_t kRows>
void AddTexts(LAudioTagData& tags, const LTagBlock& chunk, const TextRow (&rows)[kRows]) {
  for (const TextRow& row : rows) SetHashTableStringNotNullTerminated(tags, row.field, chunk.Part(row.at, row.width));
}

}  // namespace

void BWF::ToHashTable(LAudioTagData& tags, const LTagBlock& chunk) {
  constexpr TextRow kTexts[] = {
      {"COMMENT", 0, 256}, {"ORIGINATOR", 256, 32}, {"REFERENCE", 288, 32}, {"DATE", 320, 10}, {"TIME", 330, 8},
  };
  constexpr int kTimeLowAt = 338, kTimeHighAt = 342, kVersionAt = 346, kUmidAt = 348, kUmidBytes = 64;
  constexpr int kHistoryAt = 602;  // behind loudness and reserved bytes
  AddTexts(tags, chunk, kTexts);
  unsigned char version[2], umid[kUmidBytes];
  if (!chunk.Has(kTimeLowAt, kVersionAt - kTimeLowAt)) return;
  tags.SetNumber("TIMEREFLOW", GetInt32(chunk, kTimeLowAt), false);
  tags.SetNumber("TIMEREFHIGH", GetInt32(chunk, kTimeHighAt), false);
  if (chunk.Get(version, sizeof version, kVersionAt))
    tags.SetTag("BWFVERSION", LText::Format("%x", unsigned{GetLe16(version)}), false);
  if (chunk.Get(umid, sizeof umid, kUmidAt)) {
    std::string list;
    for (const unsigned char byte : umid) list += LText::Format("%d,", byte);
    tags.SetTag("UMID", list, false);
  }
  tags.SetTag("CODINGHISTORY", TextToUtf8(chunk.Part(kHistoryAt).Read()), false);
}

void CART::ToHashTable(LAudioTagData& tags, const LTagBlock& chunk) {
  constexpr TextRow kTexts[] = {
      {"CARTVERSION", 0, 4},       {"TITLE", 4, 64},
      {"ARTIST", 68, 64},          {"CUTID", 132, 64},
      {"CLIENTID", 196, 64},       {"CATEGORY", 260, 64},
      {"CLASSIFICATION", 324, 64}, {"OUTCUE", 388, 64},
      {"STARTDATE", 452, 10},      {"STARTTIME", 462, 8},
      {"ENDDATE", 470, 10},        {"ENDTIME", 480, 8},
      {"PRODUCER", 488, 64},       {"PRODUCERAPPVERSION", 552, 64},
      {"USERDEF", 616, 64},        {"URL", 1024, 1024},  // behind 276 reserved bytes
  };
  constexpr int kLevelAt = 680, kTimersAt = 684, kTimers = 8, kTimerBytes = 8, kTagTextAt = 2048;
  AddTexts(tags, chunk, kTexts);
  if (chunk.Has(kLevelAt, 4)) tags.SetNumber("LEVELREFERENCE", GetInt32(chunk, kLevelAt), false);
  for (int timer = 0; timer < kTimers; ++timer) {
    const int at = kTimersAt + timer * kTimerBytes;
    if (!chunk.Has(at, kTimerBytes)) break;
    const std::string name = LText::Format("POSTTIMER%d", timer + 1);
    SetHashTableStringNotNullTerminated(tags, (name + "USAGE").c_str(), chunk.Part(at, 4));
    tags.SetNumber(name + "VALUE", GetInt32(chunk, at + 4), false);
  }
  tags.SetTag("TAGTEXT", TextToUtf8(chunk.Part(kTagTextAt).Read()), false);
}

bool ReadTagsBWF(LAudioTagData& tags, const LTagBlock& file) {
  const LTagBlock chunk = FindRiffChunk(file, "bext");
  if (chunk.GetSize() == 0) return false;
  BWF::ToHashTable(tags, chunk);
  return true;
}

bool ReadTagsCART(LAudioTagData& tags, const LTagBlock& file) {
  const LTagBlock chunk = FindRiffChunk(file, "cart");
  if (chunk.GetSize() == 0) return false;
  CART::ToHashTable(tags, chunk);
  return true;
}

bool ReadTagsWAV(LAudioTagData& tags, const LTagBlock& file) {
  constexpr std::uint32_t kDispText = 1;  // the clipboard format of text
  bool found = false;
  WalkRiff(file, [&](const unsigned char* id, const LTagBlock& chunk) {
    unsigned char type[4];
    if (!chunk.Get(type, sizeof type, 0)) return true;
    const LTagBlock rest = chunk.Part(sizeof type);
    if (IsId(id, "LIST") && IsId(type, "INFO")) {
      AddInfo(tags, rest);
      found = true;
    } else if (IsId(id, "DISP") && GetLe32(type) == kDispText) {
      tags.SetTag("TITLE", TextToUtf8(rest.Read()), false);
      found = true;
    }
    return true;
  });
  return found;
}
