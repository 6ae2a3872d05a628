// The connection to the streaming server: a UNIX stream socket, found by its file in the user's data folder.
// Threads  [main]; Descriptor and MarkBroken [any].
// Failure  without a server the pipe stays closed; the caller tries again later.
#pragma once
#include <atomic>
#include <string>

class LNamedPipe {
 public:
  LNamedPipe() = default;
  ~LNamedPipe() { Close(); }
  LNamedPipe(const LNamedPipe&) = delete;
  LNamedPipe& operator=(const LNamedPipe&) = delete;

  bool IsOpen() const { return descriptor_ >= 0 && !broken_; }
  int Descriptor() const { return descriptor_; }
  void MarkBroken() { broken_ = true; }
  void Close();

 private:
  friend class LNamedPipeRef;
  std::atomic<int> descriptor_{-1};
  std::atomic<bool> broken_{false};
};

class LNamedPipeRef {
 public:
  static constexpr std::size_t kMaxPathBytes = 104;  // of a socket's address, everywhere
  static std::string MakeFilePath(const std::string& name);
  static bool Open(LNamedPipe& pipe, const std::string& name);  // non-blocking, close-on-exec
};
