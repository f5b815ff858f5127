// ZoColorRGBA: a four-channel colour in 32 bits, and the named colours by
// which the system's output says what a message means.
#pragma once

#include <cstdint>

class ZoColorRGBA {
 public:
  constexpr ZoColorRGBA() = default;
  constexpr ZoColorRGBA(std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a = 255)
      : m_r(r), m_g(g), m_b(b), m_a(a) {}

  constexpr std::uint8_t R() const { return m_r; }
  constexpr std::uint8_t G() const { return m_g; }
  constexpr std::uint8_t B() const { return m_b; }
  constexpr std::uint8_t A() const { return m_a; }
  // 0xRRGGBBAA.
  constexpr std::uint32_t GetValue() const {
    return (std::uint32_t(m_r) << 24) | (std::uint32_t(m_g) << 16) | (std::uint32_t(m_b) << 8) | m_a;
  }
  friend constexpr bool operator==(ZoColorRGBA x, ZoColorRGBA y) { return x.GetValue() == y.GetValue(); }

  static const ZoColorRGBA c_RED;        // failure
  static const ZoColorRGBA c_GREEN;      // success
  static const ZoColorRGBA c_GOLDENROD;  // warning
  static const ZoColorRGBA c_GRAY;       // note
  static const ZoColorRGBA c_BLUE;
  static const ZoColorRGBA c_DARKBLUE;  // heading

 private:
  std::uint8_t m_r = 0, m_g = 0, m_b = 0, m_a = 0;
};

static_assert(sizeof(ZoColorRGBA) == 4);

inline constexpr ZoColorRGBA ZoColorRGBA::c_RED{255, 0, 0};
inline constexpr ZoColorRGBA ZoColorRGBA::c_GREEN{0, 128, 0};
inline constexpr ZoColorRGBA ZoColorRGBA::c_GOLDENROD{218, 165, 32};
inline constexpr ZoColorRGBA ZoColorRGBA::c_GRAY{128, 128, 128};
inline constexpr ZoColorRGBA ZoColorRGBA::c_BLUE{0, 0, 255};
inline constexpr ZoColorRGBA ZoColorRGBA::c_DARKBLUE{0, 0, 139};
