// Building the tree of a large library, and writing it. Claim: reading costs no more than 1.2 of what pugixml needs, and
// time and memory grow with the file alone.
#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "foundation/LXMLLoader.h"

namespace {

constexpr const char* kFields[] = {"ALBUM",      "ARTIST",    "BITRATE",  "BPM",   "BPMOFFSET", "CHANNELS",
                                   "COMMENT",    "DATEADDED", "FILESIZE", "GENRE", "LENGTH",    "PLAYCOUNT",
                                   "SAMPLERATE", "TITLE",     "TRACK",    "YEAR"};

// About 600 bytes a track, as the program writes them; every tenth value has an entity in it.
std::string Library(int tracks) {
  std::string text = "<playlist>\n\n";
  for (int i = 0; i < tracks; ++i) {
    text += "\t<playitem>\n\t\t<path>/home/dj/Musik/Sammlung/Ordner " + std::to_string(i % 977) + "/Titel " +
            std::to_string(i) + ".mp3</path>\n";
    int value = i;
    for (const char* field : kFields) {
      const std::string name = field;
      ++value;
      text +=
          "\t\t<" + name + (value % 10 ? ">Wert " : ">Wert &amp; ") + std::to_string(value * 7) + "</" + name + ">\n";
    }
    text += "\t</playitem>\n\n";
  }
  return text + "</playlist>\n";
}

void Tell(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(bytes));
}

// Both parsers keep a text of their own, as when it comes from a file.
void LXMLLoad(benchmark::State& state) {
  const std::string text = Library(int(state.range(0)));
  for (auto _ : state) {
    LXMLDocument document;
    LXMLLoader loader(document, text);
    document.LoadData(loader);
    if (!loader.GetError().empty()) state.SkipWithError(loader.GetError().c_str());
  }
  Tell(state, text.size());
}

void PugiXmlLoad(benchmark::State& state) {
  const std::string text = Library(int(state.range(0)));
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size())) state.SkipWithError("pugixml");
  }
  Tell(state, text.size());
}

void LXMLSave(benchmark::State& state) {
  LXMLDocument document;
  LXMLLoader loader(document, Library(int(state.range(0))));
  document.LoadData(loader);
  std::size_t size = 0;
  for (auto _ : state) {
    std::string text;
    document.SaveToBuffer(text);
    size = text.size();
  }
  Tell(state, size);
}

// A text without end, an element without end tag for each, and names in quotes: nothing may be walked twice.
void LXMLLoadHostile(benchmark::State& state, const char* piece) {
  std::string text;
  while (text.size() < std::size_t(state.range(0))) text += piece;
  for (auto _ : state) {
    LXMLDocument document;
    LXMLLoader loader(document, text);
    document.LoadData(loader);
  }
  Tell(state, text.size());
}

BENCHMARK(LXMLLoad)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(PugiXmlLoad)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(LXMLSave)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LXMLLoadHostile, open, "<a>")->Arg(1 << 20)->Arg(1 << 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LXMLLoadHostile, comments, "<!--")->Arg(1 << 20)->Arg(1 << 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LXMLLoadHostile, attributes, "<a b c")->Arg(1 << 20)->Arg(1 << 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LXMLLoadHostile, entities, "&a<b>")->Arg(1 << 20)->Arg(1 << 24)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
