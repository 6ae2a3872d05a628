// A library of 100,000 tracks, each with thirteen fields, some 50 MB of text.
// Load     into a play list, against pugixml building the same one; claim: at most 1.2 of its time.
// Memory   the largest resident memory of a process that loads, searches, sorts and saves it; claim: below 250 MB.
// Search   one key in the search box; claim: below 30 ms. Sort: one click on a column; claim: below 300 ms.
// AddOne   to a library of the argument's size; claim: does not grow.
#include <benchmark/benchmark.h>
#include <pugixml.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "foundation/LFile.h"
#include "library/TAudioLibrary.h"
#include "library/TTrackFields.h"

namespace {

constexpr int kTracks = 100000;
LProcessInterfaceVoid nobody;

LPlayItem NewItem(int i) {
  constexpr const char* kWords[] = {"Nacht", "Träume", "Love", "Rhythm & Sound", "Über", "Disco", "Fieber", "Blue",
                                    "Stadt", "Remix",  "Echo", "Electric",       "der",  "Wind",  "Sommer", "Ohne"};
  unsigned state = unsigned(i) * 2654435761u + 12345;
  const auto word = [&] {
    state = state * 1664525 + 1013904223;
    return std::string(kWords[state >> 28]);
  };
  const std::string number = std::to_string(i), artist = word() + " " + word(),
                    album = word() + " " + word() + " " + word();
  const std::string title = word() + " " + word() + " " + number;
  LPlayItem item{"/home/musik/Sammlung/" + artist + "/" + album + "/" + title + ".mp3", {}, 0};
  const std::pair<const char*, std::string> fields[] = {
      {kTitleField, title},
      {kArtistField, artist},
      {kAlbumField, album},
      {kCommentField, i % 3 ? "" : "spielt " + word()},
      {kBpmField, std::to_string(70 + i % 110) + ".50"},
      {kPlayTimesField, std::to_string(i % 40)},
      {kVersionField, "1"},
      {kLengthField, std::to_string(8000000 + i)},
      {kSampleRateField, "44100"},
      {kBeatOffsetField, std::to_string(i % 20000)},
      {kFilePathValidField, "1"},
      {kFeedToField, kFeedToNames[i % 2]},
  };
  for (const auto& [name, value] : fields) item.fields.SetString(name, value);
  return item;
}

struct File {
  File() : path("/tmp/bench_library_" + std::to_string(::getpid()) + ".xml"), owner(::getpid()) {
    // In a process of its own, so that the memory of building it counts nowhere.
    const pid_t child = ::fork();
    if (child == 0) {
      LPlayList list;
      for (int i = 0; i < kTracks; ++i) list.AddItem(NewItem(i));
      ::_exit(SaveToXml(nobody, path, list) ? 0 : 1);
    }
    ::waitpid(child, nullptr, 0);
  }
  ~File() {
    for (const char* ending : {"", ".bak"})
      if (::getpid() == owner) LFile::Remove(path + ending);
  }
  std::string path;
  pid_t owner;
};

const std::string& LibraryPath() {
  static const File file;
  return file.path;
}

void Memory(benchmark::State& state) {
  const std::string& path = LibraryPath();
  rusage usage{};
  for (auto _ : state) {
    const pid_t child = ::fork();
    if (child == 0) {
      TAudioLibrary library(path);
      library.Load(nobody);
      library.Search("a");
      library.Search("");
      library.SortRows(lcTitle, false);
      library.SetField(0, kCommentField, "neu");
      ::_exit(library.Save(nobody).result == TLibrarySaved::Written ? 0 : 1);
    }
    ::wait4(child, nullptr, 0, &usage);
  }
  state.counters["resident_MB"] = double(usage.ru_maxrss) / 1024;
}

void Load(benchmark::State& state) {
  for (auto _ : state) {
    LPlayList list;
    LoadXml(nobody, LibraryPath(), list);
    if (list.Count() != kTracks) state.SkipWithError("not loaded");
  }
}

void LoadByPugixml(benchmark::State& state) {
  for (auto _ : state) {
    LPlayList list;
    pugi::xml_document document;
    document.load_file(LibraryPath().c_str());
    for (const auto& element : document.child("playlist").children("playitem")) {
      LPlayItem item;
      for (const auto& child : element.children()) {
        if (std::string_view(child.name()) == "path") {
          item.path = child.text().get();
        } else {
          item.fields.SetString(child.name(), child.text().get());
        }
      }
      list.AddItem(std::move(item));
    }
    if (list.Count() != kTracks) state.SkipWithError("not loaded");
  }
}

TAudioLibrary& Library() {
  static TAudioLibrary library(LibraryPath());
  if (library.List().IsEmpty()) library.Load(nobody);
  return library;
}

void Search(benchmark::State& state) {
  constexpr const char* kTexts[] = {"", "e", "der", "über sommer", "remix 99999", "gibt es nicht"};
  TAudioLibrary& library = Library();
  for (auto _ : state) library.Search(kTexts[state.range(0)]);
  state.counters["rows"] = double(library.Rows().size());
}

void Sort(benchmark::State& state) {
  TAudioLibrary& library = Library();
  for (auto _ : state) {
    state.PauseTiming();
    library.Search("");
    state.ResumeTiming();
    library.SortRows(int(state.range(0)), false);
  }
}

void Save(benchmark::State& state) {
  for (auto _ : state) Library().Save(nobody);
}

void AddOne(benchmark::State& state) {
  TAudioLibrary library("");
  for (int i = 0; i < state.range(0); ++i) library.AddItem(NewItem(i));
  const LPlayItem item = NewItem(kTracks);
  for (auto _ : state) library.AddItem(item);
}

BENCHMARK(Memory)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Load)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly();
BENCHMARK(LoadByPugixml)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly();
BENCHMARK(Search)->DenseRange(0, 5)->Unit(benchmark::kMillisecond);
BENCHMARK(Sort)->DenseRange(0, kLibraryColumns - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AddOne)->Arg(100)->Arg(1000)->Arg(10000)->Arg(kTracks)->Iterations(10000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
