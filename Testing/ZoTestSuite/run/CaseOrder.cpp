// CaseOrder: a seeded permutation of the rows of a run.
#include "run/CaseOrder.h"

#include <numeric>

namespace TestSuite {

namespace {

// SplitMix64: small, fast and fully specified, unlike the distributions of
// the standard library, whose results differ between implementations.
class CSplitMix64 {
 public:
  explicit CSplitMix64(std::uint64_t seed) : m_uiState(seed) {}
  std::uint64_t Next() {
    std::uint64_t z = (m_uiState += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  // Uniform in 0 .. bound - 1 for a bound above 0: draws in the top
  // partial block of the range are thrown away.
  std::uint64_t Below(std::uint64_t bound) {
    const std::uint64_t limit = ~std::uint64_t{0} - (~std::uint64_t{0} % bound);
    std::uint64_t value = Next();
    while (value >= limit) value = Next();
    return value % bound;
  }

 private:
  std::uint64_t m_uiState;
};

}  // namespace

std::vector<unsigned int> ShuffledOrder(unsigned int count, std::uint64_t seed) {
  std::vector<unsigned int> order(count);
  std::iota(order.begin(), order.end(), 0u);
  CSplitMix64 random(seed);
  for (unsigned int i = count; i > 1; --i) std::swap(order[i - 1], order[random.Below(i)]);
  return order;
}

void ShuffleRows(RowList& rows, std::uint64_t seed) {
  const std::vector<unsigned int> order = ShuffledOrder(rows.GetCount(), seed);
  RowList shuffled;
  for (unsigned int index : order) shuffled.Add(rows[index]);
  rows = std::move(shuffled);
}

}  // namespace TestSuite
