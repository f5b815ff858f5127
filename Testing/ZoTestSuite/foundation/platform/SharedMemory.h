// SharedMemory: blocks of memory under a name, which several processes of
// the machine can map at the same time.
//
// A name is UTF-8, not empty, with no '/', and at most 240 bytes. An object
// lives from Create until Remove, whoever made it; a view mapped before the
// Remove stays valid until it goes. Nothing here throws.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ZoPlatform::SharedMemory {

// Makes a new object of `size` bytes, all zero. False if the name is taken
// or the object cannot be made; `error`, if given, receives errno then.
bool Create(const std::string& name, std::size_t size, int* error = nullptr);
// Removes the name. False if there was no such object.
bool Remove(const std::string& name);
bool Exists(const std::string& name);
// The names of the existing objects that begin with `prefix`.
std::vector<std::string> ListNames(const std::string& prefix);

enum class EAccess { eRead, eReadWrite };

// One mapping of a whole object, held while the view lives: it opens the
// object by name, maps it, and unmaps and closes it when it goes.
class CView {
 public:
  CView() = default;
  ~CView();
  CView(CView&& other) noexcept;
  CView& operator=(CView&& other) noexcept;
  CView(const CView&) = delete;
  CView& operator=(const CView&) = delete;

  // Maps the first `size` bytes of the object. False if it does not exist,
  // is smaller, or cannot be mapped with `access`; `error` receives errno.
  bool Open(const std::string& name, std::size_t size, EAccess access, int* error = nullptr);
  // Unmaps and closes; a view that holds nothing stays so.
  void Close();
  // The mapped bytes; null while nothing is mapped. A read view must not
  // be written through.
  void* GetData() const { return m_pData; }

 private:
  void* m_pData = nullptr;
  std::size_t m_uiSize = 0;
  int m_iFd = -1;
};

}  // namespace ZoPlatform::SharedMemory
