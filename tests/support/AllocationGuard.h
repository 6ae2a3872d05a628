// Counts what the calling thread allocates with new while a guard lives: for tests that a path allocates nothing.
// Threads  counts the thread that made the guard, no other.
#pragma once

class AllocationGuard {
 public:
  AllocationGuard();
  AllocationGuard(const AllocationGuard&) = delete;
  AllocationGuard& operator=(const AllocationGuard&) = delete;
  int Count() const;  // since construction

 private:
  int countAtStart_;
};
