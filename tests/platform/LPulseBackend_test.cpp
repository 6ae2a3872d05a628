#include "platform/pulse/LPulseBackend.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstring>

#include "Ramp.h"
#include "SoundServer.h"
#include "platform/LBackendChoice.h"

namespace {

constexpr int kFrames = 30000;

LSoundStreamFormat FourChannels() {
  LSoundStreamFormat format;
  format.channels = 4;
  return format;
}

double MsOf(const std::function<void()>& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

class Pulse : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = server.StartPulse(); !why.empty()) GTEST_SKIP() << why;
  }
  SoundServer server;
};

TEST_F(Pulse, ListsDevicesWithNamesLabelsAndTheDefault) {
  const auto backend = ChooseSoundBackend("");
  ASSERT_EQ(backend->Name(), "pulse");
  const auto devices = backend->OutputDevices();
  ASSERT_EQ(devices.size(), 3u);
  EXPECT_EQ(devices[0].name, "Rohr");
  EXPECT_EQ(devices[1].name, "Vierkanal");
  EXPECT_EQ(devices[2].name, "Vierkanal (2)");
  EXPECT_TRUE(devices[1].isDefault && !devices[0].isDefault && !devices[2].isDefault);
  const std::vector<std::string> labels{"Links", "Rechts", "Surround links", "Surround rechts"};
  EXPECT_EQ(devices[1].channelNames, labels);
  EXPECT_EQ(devices[1].preferredRate, 44100);
}

// What sounds of four channels, until that is `frames` long. The pipe is served as fast as it is read, so the reading
// is held to some five times real time, and bounded.
std::vector<int> ReadPipe(const std::string& path, int frames) {
  const int pipe = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
  std::vector<int> heard, block(1024);
  std::size_t bytes = 0;
  const auto read = [&] {
    const ssize_t got = ::read(pipe, reinterpret_cast<char*>(block.data()) + bytes, block.size() * 4 - bytes);
    if (got > 0) bytes += std::size_t(got);
    if (bytes < block.size() * 4) return false;
    bytes = 0;
    for (int& sample : block) {
      EXPECT_EQ(sample & 0xfff, 0);
      sample >>= 12;
    }
    const std::vector<int> sound = WithoutSilence(block, 4);
    heard.insert(heard.end(), sound.begin(), sound.end());
    return heard.size() >= std::size_t(frames) * 4;
  };
  WaitFor(read, 8000, 1);
  ::close(pipe);
  return heard;
}

TEST_F(Pulse, RampOfFourChannelsArrivesExactInThePipe) {
  LPulseBackend backend;
  RampRenderer ramp(kFrames);
  const auto stream = backend.OpenOutput(0, FourChannels(), ramp);
  ASSERT_TRUE(stream);
  EXPECT_EQ(stream->MaxSliceFrames(), kWantedSliceFrames);
  EXPECT_EQ(stream->DeviceChannels(), 4);
  ASSERT_TRUE(stream->Start());
  const RampFound found = FindRamp(ReadPipe(server.PipePath(), kFrames), 4);
  stream->Stop();
  const int atStop = ramp.Frames();
  EXPECT_EQ(found.exactFrames, kFrames);
  EXPECT_TRUE(found.silentAfter);
  EXPECT_LE(ramp.largest, kWantedSliceFrames);
  EXPECT_EQ(ramp.Frames(), atStop);
}

struct RearTone final : LSoundRenderer {
  void RenderData(int* out, int frames, int channels) override {
    for (int i = 0; i < frames; ++i, ++frame)
      for (int channel = 0; channel < channels; ++channel)
        *out++ =
            channel < 2 ? 0 : int(std::sin(frame * 2 * M_PI * 1000 / 44100) * 0x40000000 * (channel == 2 ? 1 : 0.5));
  }
  int frame = 0;
};

// A null sink's monitor drops frames, so levels are measured: of a sine of amplitude a, the largest sample is a.
struct LoudestInput final : LSoundInputReceiver {
  void InputData(const float* in, int blockFrames, int channels) override {
    for (int i = 0; i < blockFrames * channels; ++i) {
      auto& peak = peaks[std::size_t(i % channels)];
      peak = std::max(peak.load(), std::abs(in[i]));
    }
    frames += blockFrames;
  }
  std::array<std::atomic<float>, 4> peaks{};
  std::atomic<int> frames{0};
};

TEST_F(Pulse, RearChannelsStayRearThroughOutputAndInput) {
  LPulseBackend backend;
  const auto inputs = backend.InputDevices();
  int monitor = -1;
  for (std::size_t i = 0; i < inputs.size(); ++i)
    if (inputs[i].name.find("Vierkanal") != std::string::npos && monitor < 0) monitor = int(i);
  ASSERT_GE(monitor, 0);
  RearTone tone;
  LoudestInput loudest;
  const auto input = backend.OpenInput(monitor, FourChannels(), loudest);
  const auto output = backend.OpenOutput(kDefaultDevice, FourChannels(), tone);
  ASSERT_TRUE(input && output);
  EXPECT_EQ(input->SampleRate(), 44100);
  ASSERT_TRUE(input->Start() && output->Start());
  EXPECT_TRUE(WaitFor([&] { return loudest.peaks[3] > 0.24f; }, 5000));
  output->Stop();
  input->Stop();
  const int atStop = loudest.frames;
  EXPECT_EQ(loudest.peaks[0], 0.0f);
  EXPECT_EQ(loudest.peaks[1], 0.0f);
  EXPECT_NEAR(loudest.peaks[2], 0.5f, 0.01f);
  EXPECT_NEAR(loudest.peaks[3], 0.25f, 0.01f);
  EXPECT_EQ(loudest.frames, atStop);
}

TEST_F(Pulse, RateTheServerRefusesIsConverted) {
  LPulseBackend backend;
  LSoundStreamFormat format = FourChannels();
  format.sampleRate = 800000;  // PulseAudio takes up to 768000
  RampRenderer ramp(0);
  const auto stream = backend.OpenOutput(1, format, ramp);
  ASSERT_TRUE(stream);
  EXPECT_GT(stream->ExtraLatencyFrames(), 0);
  ASSERT_TRUE(stream->Start());
  EXPECT_TRUE(WaitFor([&] { return ramp.Frames() > 80000; }, 3000));
}

TEST_F(Pulse, KilledServerIsToldAndPlaysOnWhenItIsBack) {
  LPulseBackend backend;
  RampRenderer ramp(0);
  const auto stream = backend.OpenOutput(2, FourChannels(), ramp);
  ASSERT_TRUE(stream && stream->Start());
  ASSERT_TRUE(WaitFor([&] { return ramp.Frames() > 0; }, 2000));
  server.Kill();
  std::string message;
  EXPECT_TRUE(WaitFor([&] { return !(message = backend.TakeMessage()).empty(); }, 3000));
  EXPECT_NE(message.find("\"Vierkanal\" antwortet nicht mehr"), std::string::npos) << message;
  EXPECT_TRUE(backend.OutputDevices().empty());
  stream->Stop();
  EXPECT_TRUE(stream->Start()) << "a lost device may be paused and resumed";
  const int before = ramp.Frames();
  ASSERT_EQ(server.StartPulse(), "");
  EXPECT_TRUE(WaitFor([&] { return ramp.Frames() > before; }, 6000));
  EXPECT_TRUE(WaitFor([&] { return backend.TakeMessage().find("wieder") != std::string::npos; }, 2000));
}

TEST_F(Pulse, ManyStartsAndStopsAreSafe) {
  LPulseBackend backend;
  RampRenderer ramp(0);
  for (int round = 0; round < 20; ++round) {
    const auto stream = backend.OpenOutput(round % 2 ? 1 : kDefaultDevice, FourChannels(), ramp);
    ASSERT_TRUE(stream);
    for (int i = 0; i < 10; ++i) {
      stream->Reset();
      ASSERT_TRUE(stream->Start());
      if (i % 3 == 0) stream->Stop();
    }
  }
  EXPECT_EQ(backend.TakeMessage(), "");
}

TEST(PulseWithoutServer, ConstructorIsBoundedAndListsAreEmpty) {
  const SoundServer nowhere;
  const auto check = [](double limitMs) {
    std::unique_ptr<LPulseBackend> backend;
    EXPECT_LT(MsOf([&] { backend = std::make_unique<LPulseBackend>(); }), limitMs);
    EXPECT_TRUE(backend->OutputDevices().empty());
    EXPECT_TRUE(backend->InputDevices().empty());
    RampRenderer ramp(0);
    EXPECT_EQ(backend->OpenOutput(kDefaultDevice, {}, ramp), nullptr);
    EXPECT_EQ(backend->OpenOutput(0, {}, ramp), nullptr);
  };
  check(500);
  EXPECT_EQ(ChooseSoundBackend("null")->Name(), "null");

  // A server that takes the connection and never answers.
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (nowhere.Folder() + "/native").c_str(), sizeof address.sun_path - 1);
  const int mute = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(mute, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(mute, 4), 0);
  check(1000);
  ::close(mute);
}

}  // namespace
