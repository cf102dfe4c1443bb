// A test library that is loaded before the command (LD_PRELOAD); it is not shipped. Allocations fail from number
// KAVO_FAILING_NEW on (counted from 1), KAVO_FAILING_COUNT of them (default 1). The number of allocations is written to
// the file that KAVO_COUNT_OF_NEW names. Otherwise this is the usual operator new, which calls the new-handler.
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> count{0};

long number_in(const char* variable, long fallback) {
  const char* value = std::getenv(variable);
  return value ? std::atol(value) : fallback;
}

bool fails(long number) {
  static const long first = number_in("KAVO_FAILING_NEW", 0);
  static const long failing = number_in("KAVO_FAILING_COUNT", 1);
  return first > 0 && number >= first && number < first + failing;
}

[[gnu::destructor]] void write_count() {
  const char* name = std::getenv("KAVO_COUNT_OF_NEW");
  std::FILE* file = name ? std::fopen(name, "w") : nullptr;
  if (!file) return;
  std::fprintf(file, "%ld", count.load());
  std::fclose(file);
}

void* allocate(std::size_t size, std::size_t alignment) {
  if (fails(++count)) return nullptr;
  if (alignment <= alignof(std::max_align_t)) return std::malloc(size == 0 ? 1 : size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* allocate_or_throw(std::size_t size, std::size_t alignment) {
  for (;;) {
    if (void* memory = allocate(size, alignment)) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

}  // namespace

void* operator new(std::size_t size) { return allocate_or_throw(size, 1); }
void* operator new[](std::size_t size) { return allocate_or_throw(size, 1); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size, 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size, 1); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate_or_throw(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return allocate_or_throw(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
