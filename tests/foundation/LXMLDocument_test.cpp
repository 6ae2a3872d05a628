#include <gtest/gtest.h>

#include "foundation/LFile.h"
#include "foundation/LProcessInterface.h"
#include "foundation/LXMLLoader.h"
#include "foundation/LXMLText.h"
#include "support/LTestPlatform.h"

namespace {

struct Loaded {
  explicit Loaded(const std::string& text, LProcessInterface* process = nullptr) {
    LXMLLoader loader(document, text, process);
    document.LoadData(loader);
    error = loader.GetError();
  }
  std::string Saved(int depth = -1) const {
    std::string text;
    document.SaveToBuffer(text, depth);
    return text;
  }
  LXMLDocument document;
  std::string error;
};

std::string Repeated(const char* text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(LXMLDocument, ReadsWhatPeopleWrite) {
  const struct {
    const char *text, *saved;  // without line ends
  } rows[] = {
      {"<a>x &amp; y</a>", "<a>x &amp; y</a>"},
      {"<a>&#65;&#x41;&#x6a;&apos;&quot;</a>", "<a>AAj'&quot;</a>"},
      {"<a>&#252;&#x20AC;&#x1F600;&#xD800;&#99999999999;</a>", "<a>ü€😀\uFFFD\uFFFD</a>"},
      {"<a>1&unknown;2&#0;3&#x;4</a>", "<a>1&amp;23&amp;4</a>"},
      {"<a>\n\t\tx  y \n\t</a>", "<a>x  y </a>"},
      {"<a>\t\n</a>", "<a/>"},
      {"<a xml:space=\"preserve\"><b>\tx</b></a>", "<a><b>&#9;x</b></a>"},
      {"<a xml:space='preserve'><b xml:space='default'>\tx</b></a>", "<a><b>x</b></a>"},
      {"<a>\r\n1\r2\n\r3\r\r4\n5\r\n\r\n6</a>", "<a>1\n2\n3\n\n4\n5\n\n6</a>"},
      {"<a>&#13;1&#10;</a>", "<a>&#13;1&#10;</a>"},  // meant, and not indentation
      {"<a b = \"1\" c='&lt;\"' d=4 e f=g/h i=/>", "<a b=\"1\" c=\"&lt;&quot;\" d=\"4\" e=\"\" f=\"g/h\" i=\"\"/>"},
      {"<a z='1'/><b y=\"2\"/ ><c />", "<a z=\"1\"/><b y=\"2\"/><c/>"},
      {"<?xml encoding='UTF-8' version=\"1.0\"?>", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"},
      {"<?xml version=\"1.0\" ?><?x?>", "<?xml version=\"1.0\"?><?x?>"},
      {"<!-- <a> --><![CDATA[<&]]><!DOCTYPE p [<!ENTITY a \"b\">]>",
       "<!-- <a> --><![CDATA[<&]]><!DOCTYPE p [<!ENTITY a \"b\">]>"},
      {"<!DOCTYPE html><!ELEMENT br>", "<!DOCTYPE html><!ELEMENT br=\"\">"},
      {"<!--a---><b/>", "<!--a---><b/>"},
      {"<\"a b\" 'c>'=1></'a b'>", "<\"a b\" \"c&gt;\"=\"1\"/>"},
      {"<a/> tail", "<a/> tail"},
      {"\xEF\xBB\xBF<a/>", "\xEF\xBB\xBF<a/>"},
      {"<a>\xFC\xFF</a>", "<a>\xFC\xFF</a>"},
      {"", ""},
  };
  for (const auto& row : rows) {
    const Loaded once(row.text);
    EXPECT_EQ(once.error, "") << row.text;
    EXPECT_EQ(once.Saved(), row.saved) << row.text;
    EXPECT_EQ(Loaded(once.Saved()).Saved(), row.saved) << row.text;
    EXPECT_EQ(Loaded(once.Saved(0)).Saved(), row.saved) << row.text;
  }
}

TEST(LXMLDocument, TellsTheFirstErrorAndKeepsWhatItRead) {
  const std::string ampersand =
      "Zeichenfolgen, die mit kaufmännischem Und-Zeichen (&) beginnen, müssen mit Semikolon (;) enden. Entweder "
      "ersetzen Sie das '&' mit '&amp;' oder fügen ein ';' am Ende der Steuerungszeichenfolge...";
  const std::string terminated = ". Check you have terminated your element properly.";
  const struct {
    std::string text, error, saved;
  } rows[] = {
      {"<a><b/><c>x", "Ln 1, Col 12: (EOF) Element <c> should be terminated with </c>" + terminated,
       "<a><b/><c>x</c></a>"},
      {"<a>\n<b>ä</c>\n</a></x>", "Ln 2, Col 9: Element <b> should be terminated with </b>, was with c" + terminated,
       "<a><b>ä</b></a>"},
      {"<a/></b><c/>", "Ln 1, Col 9: Misplaced </b> which does not match a <b>.", "<a/>"},
      {"<a>1 < 2</a>", "Ln 1, Col 8: Deplatziertes < ohne Namen. Benutzen Sie &lt; anstatt von < wenn angebracht.",
       "<a>1 2</a>"},
      {"<a>x & y</a>", "Ln 1, Col 8: " + ampersand, "<a>x y</a>"},
      {"<a>&abcdefghijklmnopqrstuvwx;y</a>", "Ln 1, Col 29: " + ampersand, "<a>;y</a>"},
      {"<a b='c>", "Ln 1, Col 9: Tag <a> hat kein schließendes '>'", "<a b=\"c&gt;\"/>"},
      {"<!-- a", "Ln 1, Col 7: Tag <!--> hat kein schließendes '>'", "<!-- a-->"},
      {"<", "Ln 1, Col 2: Deplatziertes < ohne Namen. Benutzen Sie &lt; anstatt von < wenn angebracht.", ""},
      {std::string("<a>\0</a>", 8), "Ln 1, Col 4: (EOF) Element <a> should be terminated with </a>" + terminated,
       "<a/>"},
  };
  for (const auto& row : rows) {
    const Loaded loaded(row.text);
    EXPECT_EQ(loaded.error, row.error) << row.text;
    EXPECT_EQ(loaded.Saved(), row.saved) << row.text;
  }
}

TEST(LXMLDocument, HoldsItsLimits) {
  const std::string deepest = Repeated("<a>", 200) + "x" + Repeated("</a>", 200);
  EXPECT_EQ(Loaded(deepest).error, "");
  EXPECT_EQ(Loaded(deepest).Saved(), deepest);

  // One level more is read as empty; what stands behind it is read as ever.
  const Loaded deeper(Repeated("<a>", 201) + "x<b><c/></b>" + Repeated("</a>", 201) + "<d/>");
  EXPECT_EQ(deeper.error, "Ln 1, Col 604: zu tief verschachtelt");
  EXPECT_EQ(deeper.Saved(), Repeated("<a>", 200) + "<a/>" + Repeated("</a>", 200) + "<d/>");
  EXPECT_EQ(Loaded(Repeated("<a>", 300000)).error, "Ln 1, Col 604: zu tief verschachtelt");

  const std::string name(300, 'n');
  EXPECT_EQ(Loaded("<" + name + "/>").Saved(), "<" + name.substr(0, 259) + "/>");
  EXPECT_LE(Loaded("<" + name + ">").error.size(), 259u);

  class StopAtSecondAsk : public LProcessInterfaceVoid {
    bool IsToStop() override { return ++asked_ > 1; }
    int asked_ = 0;
  } stopping;
  const Loaded stopped("<a>" + Repeated("<b/>", 200), &stopping);
  EXPECT_EQ(stopped.error, "");
  EXPECT_EQ(stopped.Saved().size(), std::string("<a></a>").size() + 4 * 128);  // 512 bytes further: 128 elements
}

TEST(LXMLDocument, IndentsWithTabsAndOneElementALine) {
  LXMLDocument document;
  LXMLElement& list = document.AddElement(document, "list");
  LXMLElement& item = document.AddElement(list, "item");
  document.SetAttribute(item, "n", "1 < 2");
  document.AddText(document.AddElement(item, "path"), "/a\n\"b\"\r");
  document.AddElement(list, "item");
  document.AddText(list, "two\nlines");
  std::string text;
  document.SaveToBuffer(text);
  EXPECT_EQ(text,
            "<list>\n\t<item n=\"1 &lt; 2\">\n\t\t<path>/a\n&quot;b&quot;&#13;</path>\n\t</item>\n\t<item/>\n"
            "\ttwo\nlines\n</list>\n");

  const Loaded again(text);
  EXPECT_EQ(again.Saved(0), text);
  const LXMLElement* read = again.document.GetElement("list");
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->GetElement("Item"));
  EXPECT_EQ(read->GetElementData(), "two\nlines");
  EXPECT_EQ(read->GetElement("item")->GetElement("path")->GetElementData(), "/a\n\"b\"\r");
  int items = 0;
  for (ConstNamedElementIterator i(*read, "item"); i; i.Next()) ++items;
  EXPECT_EQ(items, 2);
}

TEST(LLoadTextAutoChar, TakesBothOrdersOfUtf16) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("text.xml");
  const struct {
    std::string bytes, text;
  } rows[] = {
      {std::string("\xFF\xFE<\0\xFC\0\x3D\xD8\x00\xDE\0", 11), "<ü😀"},
      {std::string("\xFE\xFF\0<\0\xFC\xD8\x3D\xDE\x00", 10), "<ü😀"},
      {std::string("\xFF\xFE\x3D\xD8x\0", 6), "\uFFFDx"},
      {"\xFF\xFE", ""},
      {"\xFFx", "\xFFx"},
  };
  for (const auto& row : rows) {
    LFile::WriteReplacing(path, row.bytes);
    std::string text;
    EXPECT_TRUE(LLoadTextAutoChar(path, text));
    EXPECT_EQ(text, row.text);
  }
  std::string text;
  EXPECT_FALSE(LLoadTextAutoChar(platform.folder, text));
}

}  // namespace
