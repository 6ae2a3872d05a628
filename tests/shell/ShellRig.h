// The whole program without a window, on the virtual clock.
#pragma once
#include <cmath>

#include "audiofile/LWaveFile.h"
#include "shell/MainDialog.h"
#include "sound/LSoundProcess.h"
#include "support/LTestPlatform.h"
#include "toolkit/headless/LHeadlessToolkit.h"

struct ShellRig {
  ShellRig() : platform(LTestPlatform::Threads::Offline, &toolkit) {
    toolkit.SetRunFunction([this] { platform.run.RunUntilQuit(); });
    platform.backend.SetCapture(0, [this](const int* samples, int frames, int channels) {
      for (int i = 0; i < frames; ++i) {
        heard.push_back(samples[i * channels] >> 12);
        heardRight.push_back(samples[i * channels + 1] >> 12);
      }
    });
  }

  // A wave file with a sine on both channels.
  std::string Track(const std::string& name, double hz, double seconds, int amplitude = 200000) {
    std::vector<int> samples;
    for (int i = 0; i < int(seconds * kDeckRate); ++i) {
      const int value = int(amplitude * std::sin(2 * M_PI * hz * i / kDeckRate));
      samples.insert(samples.end(), {value, value});
    }
    return Wave(name, samples);
  }

  // A wave file of given stereo samples.
  std::string Wave(const std::string& name, const std::vector<int>& samples) {
    const std::string path = platform.TempPath(name);
    LSoundSink sink = LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0);
    for (std::size_t at = 0; at < samples.size(); at += 2 * kMaxBlockFrames)
      sink.Write(samples.data() + at, int(std::min<std::size_t>(kMaxBlockFrames, (samples.size() - at) / 2)));
    return path;
  }

  // Runs a script to its end; the program's exit status as success.
  bool Run(const std::string& text, TStartOptions options = {}) {
    std::string error;
    const TScript script = TScript::Parse(text, error);
    EXPECT_EQ(error, "");
    options.scriptPath = "script";
    MainDialog dialog(options, script);
    dialog.Run(0, nullptr);
    return !dialog.HadError();
  }

  bool Logged(const std::string& part) const {
    for (const std::string& line : toolkit.Log())
      if (line.find(part) != std::string::npos) return true;
    return false;
  }

  LHeadlessToolkit toolkit;
  LTestPlatform platform;
  std::vector<int> heard, heardRight;  // of the main device, on the sample scale
};
