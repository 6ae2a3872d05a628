// What the calling thread is for. Operations that belong to one kind of thread assert it first thing.
// Units    none
// Threads  [any]; the role is set once, where a thread starts.
// Failure  a debug build aborts with the operation's name; a release build checks nothing.
#pragma once
#include <cstdio>
#include <cstdlib>

enum class LThreadRole : unsigned char { Other, Main, Player, Device, Midi, Worker };

inline thread_local LThreadRole tlThreadRole = LThreadRole::Other;

// Sets the calling thread's role for a scope: tests, and steps that the main loop runs for a thread it has none of.
class LThreadRoleScope {
 public:
  explicit LThreadRoleScope(LThreadRole role) : previous_(tlThreadRole) { tlThreadRole = role; }
  ~LThreadRoleScope() { tlThreadRole = previous_; }
  LThreadRoleScope(const LThreadRoleScope&) = delete;
  LThreadRoleScope& operator=(const LThreadRoleScope&) = delete;

 private:
  LThreadRole previous_;
};

inline void LAssertThread([[maybe_unused]] LThreadRole need, [[maybe_unused]] const char* operation) {
#ifndef NDEBUG
  if (tlThreadRole == need) return;
  std::fprintf(stderr, "%s called on thread role %d, needs %d\n", operation, int(tlThreadRole), int(need));
  std::abort();
#endif
}
