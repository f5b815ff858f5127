// ZoUniqueIdT: a generator of texts that no other call, in this process or
// in any other process of the machine, gives at the same time.
//
// An id is the process id, a per-process counter and 64 random bits, each
// in fixed-width upper-case hexadecimal: letters and digits only, so that
// it can stand in a file name and in the name of a shared memory object or
// a semaphore. The process id keeps live processes apart, the counter the
// calls of one process, and the random bits a process from an earlier one
// that had the same id.
#pragma once

#include <cstdint>

#include "CString.h"

template <typename TString>
class ZoUniqueIdT {
 public:
  static TString GetUniqueID();
};

template <>
CString ZoUniqueIdT<CString>::GetUniqueID();

// The id of the process that made `id`, read from its first eight digits;
// 0 if `id` does not begin so.
std::uint32_t GetUniqueIdProcessId(const CString& id);
