// heap_tracking_Interposer: the plain way of watching the heap that the
// heap tracking benchmark compares with, preloaded into a child: malloc,
// free and realloc replaced, each forwarding to the C library and then
// recording the block in a hash map under a mutex, with a per-thread flag
// against re-entrance from the map's own allocations.
#include <cstddef>
#include <mutex>
#include <new>
#include <unordered_map>

extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void __libc_free(void* address) noexcept;
void* __libc_realloc(void* address, std::size_t size) noexcept;
}

namespace {

struct SState {
  std::mutex lock;
  std::unordered_map<void*, std::size_t> live;
  std::size_t uiCurrent = 0;
  std::size_t uiPeak = 0;
};

// Never destroyed: frees during the process's exit still arrive.
SState& state() {
  alignas(SState) static unsigned char storage[sizeof(SState)];
  static SState* instance = new (storage) SState;
  return *instance;
}

thread_local bool t_bInside = false;

void record(void* oldAddress, void* newAddress, std::size_t size) {
  if (t_bInside) return;
  t_bInside = true;
  {
    SState& s = state();
    std::lock_guard guard(s.lock);
    if (oldAddress) {
      const auto found = s.live.find(oldAddress);
      if (found != s.live.end()) {
        s.uiCurrent -= found->second;
        s.live.erase(found);
      }
    }
    if (newAddress) {
      s.live[newAddress] = size;
      s.uiCurrent += size;
      if (s.uiCurrent > s.uiPeak) s.uiPeak = s.uiCurrent;
    }
  }
  t_bInside = false;
}

}  // namespace

extern "C" void* malloc(std::size_t size) noexcept {
  void* result = __libc_malloc(size);
  record(nullptr, result, size);
  return result;
}

extern "C" void free(void* address) noexcept {
  __libc_free(address);
  record(address, nullptr, 0);
}

extern "C" void* realloc(void* address, std::size_t size) noexcept {
  void* result = __libc_realloc(address, size);
  record(address, result, size);
  return result;
}
