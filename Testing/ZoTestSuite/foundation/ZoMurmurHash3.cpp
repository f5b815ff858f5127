// ZoMurmurHash3: the 128-bit x64 form of the MurmurHash3 checksum.
#include "ZoMurmurHash3.h"

#include <bit>

namespace {

constexpr std::uint64_t c_c1 = 0x87C37B91114253D5ULL;
constexpr std::uint64_t c_c2 = 0x4CF5AD432745937FULL;

// Bytes [0, count) of `p` as a little-endian number, whatever the machine.
std::uint64_t readLittleEndian(const unsigned char* p, unsigned int count) {
  std::uint64_t value = 0;
  for (unsigned int i = count; i-- > 0;) value = (value << 8) | p[i];
  return value;
}

std::uint64_t mixKey1(std::uint64_t k) { return std::rotl(k * c_c1, 31) * c_c2; }
std::uint64_t mixKey2(std::uint64_t k) { return std::rotl(k * c_c2, 33) * c_c1; }

// The finalisation mix: every input bit reaches every output bit.
std::uint64_t finalMix(std::uint64_t k) {
  k ^= k >> 33;
  k *= 0xFF51AFD7ED558CCDULL;
  k ^= k >> 33;
  k *= 0xC4CEB9FE1A85EC53ULL;
  k ^= k >> 33;
  return k;
}

}  // namespace

ZoMurmurHash3::S128 ZoMurmurHash3::GetOptimizedChecksum128(const void* data, unsigned int length, unsigned int seed) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::uint64_t h1 = seed, h2 = seed;
  const unsigned int blocks = length / 16;
  for (unsigned int i = 0; i < blocks; ++i) {
    const unsigned char* block = bytes + 16 * static_cast<std::size_t>(i);
    h1 ^= mixKey1(readLittleEndian(block, 8));
    h1 = (std::rotl(h1, 27) + h2) * 5 + 0x52DCE729;
    h2 ^= mixKey2(readLittleEndian(block + 8, 8));
    h2 = (std::rotl(h2, 31) + h1) * 5 + 0x38495AB5;
  }
  // The last 1 to 15 bytes: the first eight go to h1, the rest to h2.
  const unsigned char* tail = bytes + 16 * static_cast<std::size_t>(blocks);
  const unsigned int rest = length % 16;
  if (rest > 8) h2 ^= mixKey2(readLittleEndian(tail + 8, rest - 8));
  if (rest > 0) h1 ^= mixKey1(readLittleEndian(tail, rest > 8 ? 8 : rest));

  h1 ^= length;
  h2 ^= length;
  h1 += h2;
  h2 += h1;
  h1 = finalMix(h1);
  h2 = finalMix(h2);
  h1 += h2;
  h2 += h1;
  return {h1, h2};
}
