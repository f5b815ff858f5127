// NamedSemaphore: counting semaphores under a name, shared by the
// processes of the machine.
//
// A name is UTF-8, not empty, with no '/', and at most 240 bytes. The name
// lives from Create until Remove; a semaphore opened before the Remove
// keeps working for those who hold it. Nothing here throws.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZoPlatform::NamedSemaphore {

enum class EWaitResult {
  eFailed,
  eSignalled,  // the count was taken down by one
  eTimedOut,
};

// One process's hold on a named semaphore; closed (never removed) when it
// goes.
class CSemaphore {
 public:
  CSemaphore() = default;
  ~CSemaphore();
  CSemaphore(const CSemaphore&) = delete;
  CSemaphore& operator=(const CSemaphore&) = delete;

  // Makes a new semaphore with the count `initial` and holds it. False if
  // the name is taken or it cannot be made; `error` receives errno then.
  bool Create(const std::string& name, unsigned int initial, int* error = nullptr);
  // Holds an existing semaphore. False if there is none by that name.
  bool Open(const std::string& name, int* error = nullptr);
  void Close();
  bool IsOpen() const { return m_pSemaphore != nullptr; }

  // Adds one to the count.
  bool Post();
  // The count; -1 if nothing is held.
  int GetValue() const;
  // Takes one from the count, waiting at most `milliseconds` on the
  // monotonic clock for it to be above zero. Signals do not end the wait.
  EWaitResult Wait(std::uint32_t milliseconds);

 private:
  void* m_pSemaphore = nullptr;
};

// Removes the name. False if there was none.
bool Remove(const std::string& name);
bool Exists(const std::string& name);
// The names of the existing semaphores that begin with `prefix`.
std::vector<std::string> ListNames(const std::string& prefix);

}  // namespace ZoPlatform::NamedSemaphore
