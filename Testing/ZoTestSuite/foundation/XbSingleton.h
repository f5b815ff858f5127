// XbSingleton: the one instance of a class per process, made on first
// request.
//
// The instance is made by the default constructor of T the first time
// GetInstance is called, once even when several threads ask at the same
// time, and is destroyed at the end of the process. HasInstance asks
// without making it, for clean-up code that must not be the first user.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>

template <typename T>
class XbSingleton {
 public:
  static T& GetInstance() {
    SState& state = getState();
    std::call_once(state.once, [&state] {
      state.instance = std::make_unique<T>();
      state.pInstance.store(state.instance.get(), std::memory_order_release);
    });
    return *state.instance;
  }

  static bool HasInstance() { return getState().pInstance.load(std::memory_order_acquire) != nullptr; }

 private:
  struct SState {
    std::once_flag once;
    std::unique_ptr<T> instance;
    std::atomic<T*> pInstance{nullptr};
  };
  static SState& getState() {
    static SState s_state;
    return s_state;
  }
};
