#include "library/LPlayListXml.h"

#include <gtest/gtest.h>

#include "foundation/LFile.h"
#include "library/LPlayList.h"
#include "support/LTestPlatform.h"

namespace {

using State = LPlayListXmlState;

std::string TextOf(const LPlayList& list) {
  std::string all;
  for (int place = 0; place < list.Count(); ++place) {
    all += "[" + list.At(place).path;
    for (const auto& [name, value] : list.At(place).fields) all += ";" + name + "=" + value;
    all += "]";
  }
  return all;
}

struct LPlayListXmlTest : testing::Test {
  State Load(const std::string& content, LPlayList& list) {
    const std::string path = machine.TempPath("list.xml");
    EXPECT_TRUE(LFile::WriteReplacing(path, content));
    return LoadXml(nobody, path, list);
  }

  LTestPlatform machine;
  LProcessInterfaceVoid nobody;
};

constexpr const char* kTwo =
    "<playlist>\n\n"
    "\t<playitem>\n\t\t<path>/m/R&amp;B &lt;1&gt;.mp3</path>\n\t\t<artist>Ä &quot;x&quot;</artist>\n\t\t<bpm>--</bpm>\n"
    "\t</playitem>\n\n"
    "\t<playitem>\n\t\t<path>/n</path>\n\t\t<comment>a&#13;b\nc</comment>\n\t\t<later>&#10;</later>\n\t\t<none></"
    "none>\n"
    "\t</playitem>\n\n"
    "</playlist>\n";

TEST_F(LPlayListXmlTest, WritesTheFormToTheByteAndReadsItBack) {
  LPlayList list, again;
  LPlayItem& first = list.AddSingleTrack("/m/R&B <1>.mp3");
  first.fields.SetString("bpm", "-<->");  // angle brackets are lost in fields
  first.fields.SetString("artist", "Ä \"x\"");
  LPlayItem& second = list.AddSingleTrack("/n");
  second.fields.SetString("none", "");
  second.fields.SetString("later", "\n");
  second.fields.SetString("comment", "a\rb\nc");
  second.fields.SetString("no name", "would break the list");
  second.fields.SetString("!--", "would hide it");
  const std::string path = machine.TempPath("written.xml");
  ASSERT_TRUE(SaveToXml(nobody, path, list));
  EXPECT_EQ(LFile::ReadAll(path).value_or(""), kTwo);
  EXPECT_EQ(LoadXml(nobody, path, again), State::Complete);
  const std::string wanted = "[/m/R&B <1>.mp3;artist=Ä \"x\";bpm=--][/n;comment=a\rb\nc;later=\n;none=]";
  EXPECT_EQ(TextOf(again), wanted);

  // The same through the reader of all other XML, and behind what is there already.
  EXPECT_EQ(Load("<?xml version=\"1.0\"?><!-- <playitem> -->\n" + std::string(kTwo), again), State::Complete);
  EXPECT_EQ(TextOf(again), wanted + wanted);
}

TEST_F(LPlayListXmlTest, BothReadersGiveTheSameForEveryVariant) {
  const struct {
    const char *from, *to;
  } changes[] = {
      {"/n", ""},
      {"/n", "\t/n"},
      {"/n", "/n "},
      {"/n", "/n&#9;"},
      {"/n", "&apos;&#65;"},
      {"/n", "&#x41;"},
      {"/n", "&uuml;"},
      {"/n", "a > b"},
      {"/n", "a & b"},
      {"\n\t\t<none>", "<none>"},
      {"none></none", "path></path"},
      {"none>", "none a=b>"},
      {"none></none", "none/"},
      {"</none>", "</nine>"},
      {"<none></none>", "<none><x>y</x>z</none>"},
      {"--", "-\r\n-"},
      {"--", "\xFF"},
      {"--", "<![CDATA[x]]>"},
      {"<bpm>", "<artist>"},
  };
  for (const auto& change : changes) {
    std::string text = kTwo;
    text.replace(text.find(change.from), std::string(change.from).size(), change.to);
    LPlayList direct, document;
    const State state = Load(text, direct);
    EXPECT_EQ(Load("<!---->" + text, document), state) << change.to;
    EXPECT_EQ(TextOf(direct), TextOf(document)) << change.to;
    EXPECT_EQ(direct.Count(), 2) << change.to;
  }
}

TEST_F(LPlayListXmlTest, OfATruncatedListWhatWasWholeIsKept) {
  const std::string whole = kTwo;
  int kept = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    LPlayList list;
    const bool isWhole = size + 2 >= whole.size();  // the last '>' may be missing
    EXPECT_EQ(Load(whole.substr(0, size), list), isWhole ? State::Complete : State::Damaged) << size;
    EXPECT_GE(list.Count(), kept);  // never less than a shorter beginning gave
    kept = list.Count();
    for (int place = 0; place < kept; ++place)
      EXPECT_EQ(list.At(place).path, place == 0 ? "/m/R&B <1>.mp3" : "/n") << size;
  }
  EXPECT_EQ(kept, 2);
}

TEST_F(LPlayListXmlTest, ForeignFilesAreNoLists) {
  for (const char* text : {"", "hello", "<html><playitem/></html>", "\x89PNG\r\n\x1A\n", "<playlist", "\xFF\xFE"}) {
    LPlayList list;
    EXPECT_EQ(Load(text, list), State::Damaged) << text;
    EXPECT_EQ(TextOf(list), "") << text;
  }
  LPlayList list;
  EXPECT_EQ(Load("<playlist/>", list), State::Complete);
  EXPECT_EQ(LoadXml(nobody, machine.TempPath("none.xml"), list), State::Missing);
  EXPECT_EQ(LoadXml(nobody, machine.folder, list), State::Unreadable);
}

TEST_F(LPlayListXmlTest, AListLargerThanAnyBufferComesBackWhole) {
  LPlayList list, again;
  for (int i = 0; i < 3000; ++i)
    list.AddSingleTrack("/x").fields.SetString("comment", std::string(std::size_t(i), 'c'));
  list.At(1500).fields.SetString("comment", std::string(1000000, '&'));
  const std::string path = machine.TempPath("large.xml");
  ASSERT_TRUE(SaveToXml(nobody, path, list));
  EXPECT_EQ(LoadXml(nobody, path, again), State::Complete);
  EXPECT_EQ(TextOf(again), TextOf(list));
}

}  // namespace
