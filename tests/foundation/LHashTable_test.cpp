#include "foundation/LHashTable.h"

#include <gtest/gtest.h>

namespace {

TEST(LHashTable, ListsItsFieldsInSortedOrderAndReplacesByName) {
  LHashTable table;
  table.SetParmBottom("TITLE", "Eins");
  table.SetString("ARTIST", "Zwei");
  table.SetInt("YEAR", -7);
  table.SetParmBottom("TITLE", "Drei");
  std::string all;
  for (const auto& [name, value] : table) all += name + "=" + value + " ";
  EXPECT_EQ(all, "ARTIST=Zwei TITLE=Drei YEAR=-7 ");

  LHashTable copy = table;
  copy.DeleteField("TITLE");
  copy.DeleteField("TITLE");
  EXPECT_EQ(copy.GetParm("TITLE"), nullptr);
  EXPECT_STREQ(copy.GetParm("TITLE", "ohne"), "ohne");
  EXPECT_STREQ(table.GetParm("TITLE"), "Drei");
}

TEST(LHashTable, ReadsNumbersAndSwitchesFromText) {
  const struct {
    const char* text;
    int number;  // with 5 as the default
    bool off, on;
  } rows[] = {
      {"", 5, false, true},      {"0", 0, false, false},   {"1", 1, true, true},
      {"12abc", 12, true, true}, {"abc", 0, true, true},   {"-3", -3, true, true},
      {"false", 0, true, true},  {"007", 7, false, false}, {"99999999999", 2147483647, true, true},
  };
  for (const auto& row : rows) {
    LHashTable table;
    table.SetString("X", row.text);
    EXPECT_EQ(table.GetInt("X", 5), row.number) << row.text;
    EXPECT_EQ(table.GetBool("X", false), row.off) << row.text;
    EXPECT_EQ(table.GetBool("X", true), row.on) << row.text;
  }
  const LHashTable none;
  std::string out = "alt";
  none.GetString("X", "neu", out);
  EXPECT_EQ(out, "neu");
  EXPECT_EQ(none.GetInt("X", 5), 5);
  EXPECT_TRUE(none.GetBool("X", true));
}

}  // namespace
