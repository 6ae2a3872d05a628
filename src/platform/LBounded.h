// Runs a call that may hang in a library beside the caller's thread, and waits for it no longer than a limit.
// Units    milliseconds
// Threads  [any] but [device]
// Failure  false: not done in time, or no thread was to be had. What the call holds must be owned by it: it may go on.
#pragma once
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

inline bool RunBounded(unsigned limitMs, std::function<void()> call) {
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
  };
  auto state = std::make_shared<State>();
  // The standard library reports a refused thread by an exception; it ends here.
  try {
    std::thread([state, call = std::move(call)]() mutable {
      call();
      call = nullptr;  // what it held is freed before the caller goes on
      const std::lock_guard lock(state->mutex);
      state->done = true;
      state->changed.notify_all();
    }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  std::unique_lock lock(state->mutex);
  return state->changed.wait_for(lock, std::chrono::milliseconds(limitMs), [&] { return state->done; });
}
