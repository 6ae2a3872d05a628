#include "library/TAudioLibrary.h"

#include <gtest/gtest.h>

#include "foundation/LFile.h"
#include "library/TFoldedText.h"
#include "library/TTrackFields.h"
#include "support/LTestPlatform.h"

namespace {

struct TAudioLibraryTest : testing::Test {
  int Add(const std::string& path, const std::vector<std::pair<const char*, std::string>>& fields) {
    LPlayItem item{path, {}, 0};
    for (const auto& [name, value] : fields) item.fields.SetString(name, value);
    return library.AddItem(std::move(item));
  }
  std::string Shown() const {
    std::string all;
    for (const int row : library.Rows()) all += library.List().Find(row)->path + " ";
    return all;
  }
  std::string Cell(int index, int column) const { return LibraryCellText(*library.List().Find(index), column); }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
  TAudioLibrary library{machine.TempPath("library.xml")};
};

TEST_F(TAudioLibraryTest, ColumnsShowFieldsAndWhatStandsForMissingOnes) {
  const int bare = Add("/a", {});
  const int full = Add("/b", {{"title", "T"},
                              {"artist", "A"},
                              {"album", "L"},
                              {"comment", "K"},
                              {"length", "8268750"},
                              {"samplerate", "44100"},
                              {"playtimes", "7"},
                              {"bpm", "128.5"},
                              {"feedto", "Keines"}});
  const char* const none[] = {"Unbekannt", "", "Unbekannt", "Unbekannt", "-Nicht bestimmt-", "0", "--", "", "Deck A"};
  const char* const some[] = {"T", "K", "A", "L", "0:03:07", "7", "128.50", "", "Keines"};  // 187.5 s
  for (int column = 0; column < kLibraryColumns; ++column) {
    EXPECT_EQ(Cell(bare, column), none[column]);
    EXPECT_EQ(Cell(full, column), some[column]);
  }
  const struct {
    const char *field, *shown;
  } tempos[] = {{"--", "--"},     {"0.0", "--"},     {"0.5", "Unbekannt"}, {"1.0", "Unbekannt"},
                {"1.01", "1.01"}, {"1001", "--"},    {"nan", "--"},        {"-120", "--"},
                {"", "--"},       {"120 bpm", "--"}, {"1000", "1000.00"}};
  for (const auto& tempo : tempos) {
    library.SetField(bare, "bpm", tempo.field);
    EXPECT_EQ(Cell(bare, lcBpm), tempo.shown) << tempo.field;
  }
  EXPECT_EQ(BpmFieldText(0.4) + BpmFieldText(-1) + BpmFieldText(99.999), "1.00.0100.00");
  for (const char* field : {"length", "samplerate", "beatoffset", "playtimes"}) library.SetField(bare, field, "-5");
  const LPlayItem& item = *library.List().Find(bare);
  EXPECT_EQ(TrackLength(item) + TrackSampleRate(item) + TrackBeatOffset(item) + TrackPlayTimes(item), 0);

  TLVDeckPositionHelper decks;
  decks.ApplyToDeck(1, true);
  decks.ApplyToDeck(2, true);
  EXPECT_EQ(LibraryCellText(item, lcDeck, decks), "B");
  decks.ApplyToDeck(0, true);
  EXPECT_EQ(LibraryCellText(item, lcDeck, decks), "A, B");
  decks.ApplyToDeck(1, false);
  EXPECT_EQ(LibraryCellText(item, lcDeck, decks), "A");
}

TEST_F(TAudioLibraryTest, SearchLooksIntoFourFieldsInAnyCase) {
  Add("/1", {{"title", "ÄRGER im Paradies"}, {"album", "secret"}});
  Add("/2", {{"title", "x"}, {"artist", "Жанна"}, {"comment", "NUR für ärger"}});
  const int third = Add("/ärger", {{"title", "no"}, {"bpm", "ärger"}});
  const struct {
    const char *text, *shown;
  } rows[] = {{"", "/1 /2 /ärger "},  {"  ärGER ", "/1 /2 "}, {"жАННа", "/2 "},
              {"paradiessecret", ""}, {"\xC3", "/1 /2 "},     {"zzz", ""}};
  for (const auto& row : rows) {
    library.Search(row.text);
    EXPECT_EQ(Shown(), row.shown) << row.text;
  }
  library.Search("ärger");
  Add("/4", {{"comment", "Ärger"}});
  Add("/5", {});
  EXPECT_EQ(Shown(), "/1 /2 /4 ");
  for (int i = 0; i < 50; ++i) library.SetField(third, "title", "Ärger " + std::to_string(i));
  library.Search("ärger");
  EXPECT_EQ(Shown(), "/1 /2 /ärger /4 ");
  library.Search("ärger 4");
  EXPECT_EQ(Shown(), "/ärger ");
  EXPECT_EQ(FoldedText("A\xC3\x84\xE1\xBA\x9E\xFF\xF0\x9F\x8E\xA7\xC3"), "a\xC3\xA4\xC3\x9F\xFF\xF0\x9F\x8E\xA7\xC3");
}

TEST_F(TAudioLibraryTest, SortsNumbersByTheirDigitsAndTextsFolded) {
  Add("/a", {{"title", "b"}, {"bpm", "128.50"}, {"playtimes", "10"}});
  Add("/b", {{"title", "Ä"}, {"bpm", "--"}, {"playtimes", "9"}});
  Add("/c", {{"title", "B"}, {"bpm", "99.9"}, {"playtimes", "10"}});
  Add("/d", {{"title", "ä"}, {"bpm", "1.0"}, {"playtimes", "100"}});
  Add("/e", {{"title", "a"}, {"bpm", "174"}});
  library.Search("");
  const struct {
    int column;
    bool descending;
    const char* order;
  } rows[] = {
      {lcTitle, false, "/e /c /a /b /d "},     {lcTitle, true, "/d /b /a /c /e "},
      {lcBpm, false, "/b /d /c /a /e "},       {lcBpm, true, "/e /a /c /b /d "},
      {lcPlayTimes, false, "/e /b /a /c /d "}, {lcPlayTimes, true, "/d /a /c /b /e "},
  };
  for (const auto& row : rows) {
    library.Search("");
    library.SortRows(row.column, row.descending);
    EXPECT_EQ(Shown(), row.order) << row.column << row.descending;
  }
  const struct {
    const char* text;
    std::int64_t number;
  } numbers[] = {{"128.50", 12850}, {"--", 0}, {" \t-1x2", -12}, {"+7", 7}, {"Unbekannt", 0}, {"0x7fffffff", 7}};
  for (const auto& row : numbers) EXPECT_EQ(LibrarySortNumber(row.text), row.number) << row.text;
}

TEST_F(TAudioLibraryTest, TheListTakesTheRowsOrderWithItsSelection) {
  for (const char* title : {"c x", "b", "a x", "d x"}) Add(std::string("/") + title[0], {{"title", title}});
  library.Select(0, true);
  library.Search("x");
  library.SortRows(lcTitle, false);
  library.TakeRowOrder();
  library.Search("");
  EXPECT_EQ(Shown(), "/a /b /c /d ");
  EXPECT_EQ(library.Selection(), (std::vector<bool>{false, false, true, false}));
  library.Move(2, 0);
  EXPECT_TRUE(library.Remove(2));  // the index of /a
  EXPECT_EQ(library.Selection(), (std::vector<bool>{true, false, false}));
  library.ReOrder();
  EXPECT_EQ(Shown(), "/c /b /d ");
}

TEST_F(TAudioLibraryTest, PlayCountsWrapAndTakeOnlyDigits) {
  const int track = Add("/a", {});
  const struct {
    const char *typed, *kept, *afterPlay;
  } rows[] = {{"12", "12", "13"},
              {"12a", "13", "14"},
              {"", "14", "15"},
              {"-1", "15", "16"},
              {"2147483646", "2147483646", "0"},
              {"99999999999999999999", "2147483647", "0"}};
  for (const auto& row : rows) {
    library.SetTrackPlayCount(track, row.typed);
    EXPECT_EQ(Cell(track, lcPlayTimes), row.kept) << row.typed;
    library.IncreasePlayCount(track);
    EXPECT_EQ(Cell(track, lcPlayTimes), row.afterPlay) << row.typed;
  }
  EXPECT_FALSE(library.IncreasePlayCount(1) || library.SetTrackPlayCount(-1, "1") || library.SetTempo(9, 1, 1));
}

TEST_F(TAudioLibraryTest, LostTracksAreMarkedAndFoundAgain) {
  const std::string here = machine.TempPath("here.wav"), moved = machine.TempPath("moved.wav");
  ASSERT_TRUE(LFile::WriteReplacing(here, "x"));
  const int valid = Add(here, {}), lost = Add("/gone", {}), cached = Add("/cache", {{"originalfilepath", here}});
  EXPECT_EQ(library.CheckFilesValid(nobody), 1);
  EXPECT_FALSE(IsTrackValid(*library.List().Find(lost)));
  EXPECT_TRUE(IsTrackValid(*library.List().Find(valid)) && IsTrackValid(*library.List().Find(cached)));
  std::string move;
  EXPECT_TRUE(library.ResolveFilePath(lost, moved, [&](auto& from, auto& to) { move = from + ">" + to; }));
  EXPECT_EQ(move, "/gone>" + moved);
  EXPECT_EQ(library.FindTrack(moved)->index, lost);
  EXPECT_EQ(library.FindTrack("/gone"), nullptr);
  EXPECT_TRUE(IsTrackValid(*library.List().Find(lost)));
  EXPECT_EQ(library.FindTrack("/cache")->index, cached);
  EXPECT_TRUE(library.IsFileDuplicate("/x", "/cache"));
  EXPECT_FALSE(library.IsFileDuplicate("/CACHE", ""));
  ASSERT_EQ(library.Save(nobody).result, TLibrarySaved::Written);
  TAudioLibrary again(machine.TempPath("library.xml"));
  EXPECT_EQ(again.Load(nobody).state, LPlayListXmlState::Complete);
  EXPECT_EQ(again.Rows().size(), 3u);
  EXPECT_EQ(again.FindTrack(here)->index, valid);
}

}  // namespace
