#include "blit/blend_row.h"

namespace qbo {
namespace {

// Rounds (a x b + 255) / 256 the way the 16-bit lanes do: a x b <= 65025,
// so the offset sum still fits 16 bits.
inline unsigned AlphaProduct(unsigned a, unsigned b) { return (a * b + 255) >> 8; }

inline void BlendChannels(uint8_t* d, const uint8_t* s, int32_t w, unsigned alpha) {
  for (int c = 0; c < 3; ++c) {
    const int32_t cs = s[c];
    const int32_t cd = d[c];
    const int32_t diff = cs - cd + (cs > cd ? 1 : 0);
    d[c] = static_cast<uint8_t>(cd + ((2 * diff * w) >> 16));
  }
  d[3] = static_cast<uint8_t>(alpha);
}

}  // namespace

void BlendOverRow_C(uint8_t* dst, const uint8_t* src, const int32_t* share, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i, dst += 4, src += 4) {
    const unsigned as = src[3];
    const unsigned ad = dst[3];
    BlendChannels(dst, src, share[as * 256 + ad], as + ad - AlphaProduct(as, ad));
  }
}

void BlendOverInvertedRow_C(uint8_t* dst, const uint8_t* src, const int32_t* share,
                            std::size_t width) {
  for (std::size_t i = 0; i < width; ++i, dst += 4, src += 4) {
    const unsigned as = src[3];
    const unsigned ad = dst[3];
    BlendChannels(dst, src, share[(255 - as) * 256 + ad], (255 - as) + AlphaProduct(as, ad));
  }
}

}  // namespace qbo
