// The program's one kind of mutex: recursive. The engine and render locks also inherit priority, so that a reader at
// audio priority never waits behind a thread that the scheduler keeps from running.
// Threads  [any]; never [device], but for the render lock, which is held only while indices and flags change.
// Failure  none: a system without priority inheritance gives a plain recursive mutex.
#pragma once
#include <pthread.h>

class LMutex {
 public:
  enum class Kind { Plain, PriorityInheritance };
  explicit LMutex(Kind kind = Kind::Plain) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    if (kind == Kind::PriorityInheritance) pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
  }
  ~LMutex() { pthread_mutex_destroy(&mutex_); }
  LMutex(const LMutex&) = delete;
  LMutex& operator=(const LMutex&) = delete;

  // Lower-case names, so that std::lock_guard takes it.
  void lock() { pthread_mutex_lock(&mutex_); }
  bool try_lock() { return pthread_mutex_trylock(&mutex_) == 0; }
  void unlock() { pthread_mutex_unlock(&mutex_); }

 private:
  pthread_mutex_t mutex_;
};
