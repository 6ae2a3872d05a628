#include "console/TStreamSender.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstring>

#include "Rig.h"
#include "foundation/LFile.h"
#include "foundation/TSettings.h"

extern char** environ;

namespace {

// The server in a process of its own.
class Server {
 public:
  Server(const std::string& socket, const std::string& out, const char* mode) {
    std::string words[] = {TAVI_STREAM_SERVER, socket, out, mode};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    started_ = ::posix_spawn(&process_, TAVI_STREAM_SERVER, nullptr, nullptr, arguments, environ) == 0;
  }
  ~Server() {
    if (!started_) return;
    ::kill(process_, SIGKILL);
    Wait();
  }
  void Wait() {
    if (started_) ::waitpid(process_, nullptr, 0);
    started_ = false;
  }

 private:
  pid_t process_ = 0;
  bool started_ = false;
};

class StreamSender : public ::testing::Test {
 protected:
  void Connect() {
    ASSERT_TRUE(platform.WaitUntil([&] { return LNamedPipeRef::Open(pipe, kName); }));
    sender.SetPipe(&pipe);
  }
  std::string Socket() const { return LNamedPipeRef::MakeFilePath(kName); }
  std::string Out() const { return platform.TempPath("stream.raw"); }

  static constexpr const char* kName = "TaviStreamToRelayo";
  LTestPlatform platform{LTestPlatform::Threads::Real};
  LNamedPipe pipe;
  TStreamSender sender;
};

TEST_F(StreamSender, ThePathAndAMissingServer) {
  EXPECT_EQ(LFile::NameFromPath(Socket()), ".spipe.TaviStreamToRelayo");
  EXPECT_FALSE(LNamedPipeRef::Open(pipe, kName));
  EXPECT_FALSE(LNamedPipeRef::Open(pipe, std::string(200, 'x')));
  LFile::WriteReplacing(Socket(), "no socket");
  EXPECT_FALSE(LNamedPipeRef::Open(pipe, kName));
  EXPECT_FALSE(pipe.IsOpen());
}

TEST_F(StreamSender, AServerGetsEverySampleInOrder) {
  Server server(Socket(), Out(), "all");
  ASSERT_NO_FATAL_FAILURE(Connect());
  const auto noise = Engine::Noise(2, 500000, 2 * 8192 * 60);
  std::size_t at = 0;
  ASSERT_TRUE(platform.WaitUntil([&] {
    if (at < noise.size() && LFile::Size(Out()).value_or(0) + 6 * 65536 >= at * 4) {
      sender.Send(noise.data() + at, 2 * 8192);
      at += 2 * 8192;
    }
    return LFile::Size(Out()).value_or(0) == noise.size() * 4;
  }));
  sender.SetPipe(nullptr);
  pipe.Close();
  server.Wait();
  const std::string got = LFile::ReadAll(Out()).value_or("");
  ASSERT_EQ(got.size(), noise.size() * 4);
  EXPECT_EQ(std::memcmp(got.data(), noise.data(), got.size()), 0);
  EXPECT_EQ(sender.DroppedBlocks(), 0);
}

TEST_F(StreamSender, AServerThatStallsCostsTheRecorderNothing) {
  Server server(Socket(), Out(), "stall");
  ASSERT_NO_FATAL_FAILURE(Connect());
  const std::vector<int> block(2 * 8192);
  const LRealClock clock;
  const auto start = clock.NowMs();
  for (int i = 0; i < 200; ++i) sender.Send(block.data(), int(block.size()));
  EXPECT_LT(clock.NowMs() - start, 500u);
  EXPECT_GT(sender.DroppedBlocks(), 150);
  sender.SetPipe(nullptr);  // does not wait for the block that is being sent
  EXPECT_LT(clock.NowMs() - start, 1500u);
}

TEST_F(StreamSender, AServerThatDiesIsReplacedByTheNextOne) {
  {
    Server server(Socket(), Out(), "die");
    ASSERT_NO_FATAL_FAILURE(Connect());
    const std::vector<int> block(2 * 8192, 7);
    ASSERT_TRUE(platform.WaitUntil([&] {
      sender.Send(block.data(), int(block.size()));
      return !pipe.IsOpen();
    }));
  }
  sender.SetPipe(nullptr);
  Server next(Socket(), Out(), "all");
  ASSERT_NO_FATAL_FAILURE(Connect());
  const std::vector<int> block(2 * 8192, 9);
  sender.Send(block.data(), int(block.size()));
  EXPECT_TRUE(platform.WaitUntil([&] { return LFile::Size(Out()).value_or(0) >= block.size() * 4; }));
}

}  // namespace
