#include <cmath>

#include "buffer/mask_row.h"

namespace qbo {

void FillMaskColorRow_C(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                        std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    uint8_t& alpha = dst_argb[4 * i + 3];
    const float scaled = static_cast<float>(alpha) * inv_byte[mask[i]];
    // At most 255 x 1.0f, so the rounded value always fits the byte.
    alpha = static_cast<uint8_t>(std::lrint(scaled));
  }
}

void MixMaskRow_C(uint8_t* dst, const uint8_t* src, std::size_t width) {
  constexpr int kRoundUp = 255;
  for (std::size_t i = 0; i < width; ++i) {
    const int d = dst[i], s = src[i];
    dst[i] = static_cast<uint8_t>(d + s - ((d * s + kRoundUp) >> 8));
  }
}

void SubMaskRow_C(uint8_t* dst, const uint8_t* src, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) dst[i] = dst[i] > src[i] ? dst[i] - src[i] : 0;
}

}  // namespace qbo
