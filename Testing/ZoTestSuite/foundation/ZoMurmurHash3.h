// ZoMurmurHash3: the 128-bit MurmurHash3 checksum (the x64 form), a fast
// non-cryptographic hash for telling files with equal bytes.
#pragma once

#include <cstdint>

class ZoMurmurHash3 {
 public:
  // The two 64-bit halves as the algorithm leaves them; as bytes, the hash
  // is `uiLow` then `uiHigh`, each little-endian.
  struct S128 {
    std::uint64_t uiLow = 0;
    std::uint64_t uiHigh = 0;
    friend bool operator==(const S128&, const S128&) = default;
  };

  // The same bytes and seed give the same value on every machine.
  static S128 GetOptimizedChecksum128(const void* data, unsigned int length, unsigned int seed);
};
