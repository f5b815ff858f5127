#include "foundation/ZoMurmurHash3.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

// The hash as published vectors write it: the two halves as 16-digit
// hexadecimal numbers, the first half first.
std::string hex(const ZoMurmurHash3::S128& h) {
  static const char* digits = "0123456789abcdef";
  std::string out;
  for (std::uint64_t half : {h.uiLow, h.uiHigh})
    for (int shift = 60; shift >= 0; shift -= 4) out += digits[(half >> shift) & 0xF];
  return out;
}

ZoMurmurHash3::S128 hashText(const std::string& text, unsigned int seed = 0) {
  return ZoMurmurHash3::GetOptimizedChecksum128(text.data(), static_cast<unsigned int>(text.size()), seed);
}

void appendLittleEndian(std::vector<unsigned char>& out, std::uint64_t value) {
  for (int i = 0; i < 8; ++i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

}  // namespace

// The algorithm's own verification: hash the keys {}, {0}, {0,1}, ...,
// {0..254} with seed 256 - length, hash the 256 results laid end to end
// with seed 0; the first four bytes, little-endian, are 0x6384BA69.
TEST(ZoMurmurHash3, PassesTheAlgorithmsVerificationTest) {
  std::vector<unsigned char> key, results;
  for (unsigned int length = 0; length < 256; ++length) {
    const auto h = ZoMurmurHash3::GetOptimizedChecksum128(key.data(), length, 256 - length);
    appendLittleEndian(results, h.uiLow);
    appendLittleEndian(results, h.uiHigh);
    key.push_back(static_cast<unsigned char>(length));
  }
  const auto h = ZoMurmurHash3::GetOptimizedChecksum128(results.data(), static_cast<unsigned int>(results.size()), 0);
  EXPECT_EQ(static_cast<std::uint32_t>(h.uiLow), 0x6384BA69u);
}

TEST(ZoMurmurHash3, KnownVectors) {
  // Empty input with seed 0: every step keeps zero.
  EXPECT_EQ(hashText(""), (ZoMurmurHash3::S128{0, 0}));
  EXPECT_EQ(ZoMurmurHash3::GetOptimizedChecksum128(nullptr, 0, 0), (ZoMurmurHash3::S128{0, 0}));
  // Published vectors, tail only, body and tail, and several blocks.
  EXPECT_EQ(hex(hashText("hello")), "cbd8a7b341bd9b025b1e906a48ae1d19");
  EXPECT_EQ(hex(hashText("The quick brown fox jumps over the lazy dog")), "e34bbc7bbc071b6c7a433ca9c49a9347");
  EXPECT_EQ(hex(hashText("The quick brown fox jumps over the lazy dog", 1223)), "a2b41aca17b9f42f4a06834858c198c7");
  EXPECT_EQ(hex(hashText("MurmurHash3 was written by Austin Appleby, and is placed in the public")),
            "a91793d43f82cbabda2fb0c28c24799a");
  const auto fox = hashText("The quick brown fox jumps over the lazy dog");
  EXPECT_EQ(fox.uiLow, 0xE34BBC7BBC071B6CULL);
  EXPECT_EQ(fox.uiHigh, 0x7A433CA9C49A9347ULL);
}

TEST(ZoMurmurHash3, EveryByteAndTheSeedCount) {
  const std::string text(37, 'x');  // two blocks and a tail of five
  const auto base = hashText(text);
  EXPECT_EQ(hashText(text), base);
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string changed = text;
    changed[i] = 'y';
    EXPECT_NE(hashText(changed), base) << i;
  }
  EXPECT_NE(hashText(text, 1), base);
  EXPECT_NE(hashText(text + '\0'), base);  // a trailing zero byte counts by the length
}

TEST(ZoMurmurHash3, DoesNotDependOnTheAlignmentOfTheData) {
  const std::string text = "The quick brown fox jumps over the lazy dog";
  std::vector<char> buffer(text.size() + 8);
  for (std::size_t offset = 0; offset < 8; ++offset) {
    std::copy(text.begin(), text.end(), buffer.begin() + static_cast<std::ptrdiff_t>(offset));
    EXPECT_EQ(ZoMurmurHash3::GetOptimizedChecksum128(buffer.data() + offset, static_cast<unsigned int>(text.size()), 0),
              hashText(text))
        << offset;
  }
}
