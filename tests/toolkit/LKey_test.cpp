#include "foundation/LKey.h"

#include <gtest/gtest.h>

namespace {

TEST(LKey, ShowsModifiersInOrderAndGermanNames) {
  struct Case {
    std::uint32_t value;
    const char* text;
  };
  const Case cases[] = {
      {0, ""},
      {0x1B0000, ""},  // modifiers alone
      {0x1B0041, "Meta+Strg+Alt+Umschalt+A"},
      {0x10020, "Strg+Leertaste"},
      {0xC4, "Ä"},
      {0x20AC, "€"},
      {0x24000000, "Eingabe"},
      {0x33090000, "Strg+Alt+Rücktaste"},
      {0x72000000, "Einfg"},
      {0x73000000, "Pos1"},
      {0x79020000, "Umschalt+Bild ab"},
      {0x7B000000, "←"},
      {0x7A000000, "F1"},
      {0x5A000000, "F20"},
      {0x7F, "Unbekannt"},
      {0xD800, "Unbekannt"},  // half a surrogate pair
      {0x80000000, "Unbekannt"},
  };
  for (const Case& c : cases) EXPECT_EQ(LKey(c.value).GetDisplayText(), c.text) << std::hex << c.value;
}

TEST(LKey, CharactersAreUpperCasedAndModifiersMasked) {
  EXPECT_EQ(LKey::FromCharacter(u'o', LKey::kCommand).Value(), 0x1004FU);
  EXPECT_EQ(LKey::FromCharacter(u'ü').Value(), 0xDCU);
  EXPECT_EQ(LKey::FromCharacter(u'÷').Value(), 0xF7U);
  EXPECT_EQ(LKey::FromCharacter(u'ß').Value(), 0xDFU);
  EXPECT_EQ(LKey::FromCharacter(u'{', 0xFFFFFFFF).Value(), 0x1B007BU);
  EXPECT_EQ(LKey::FromCode(LKeyCode::kTab, 0x40000).Value(), 0x30000000U);  // the caps-lock bit stays clear
}

}  // namespace
