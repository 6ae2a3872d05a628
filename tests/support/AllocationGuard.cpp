#include "support/AllocationGuard.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local int tlAllocations = 0;

void* Allocate(std::size_t size, std::size_t alignment) {
  ++tlAllocations;
  size = std::max<std::size_t>(size, 1);
  void* memory = alignment <= alignof(std::max_align_t)
                     ? std::malloc(size)
                     : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  if (!memory) std::abort();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size, 1); }
void* operator new[](std::size_t size) { return Allocate(size, 1); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, 1); }
void* operator new(std::size_t size, std::align_val_t alignment) { return Allocate(size, std::size_t(alignment)); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return Allocate(size, std::size_t(alignment)); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

AllocationGuard::AllocationGuard() : countAtStart_(tlAllocations) {}
int AllocationGuard::Count() const { return tlAllocations - countAtStart_; }
