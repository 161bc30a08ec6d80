#include <algorithm>
#include <cmath>

#include "blit/zoom_row.h"

namespace qbo {

void Zoom8Row_C(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx, float fy,
                std::size_t width) {
  const float gy = 1.0f - fy;
  for (std::size_t c = 0; c < width; ++c) {
    const float f = fx[c], g = 1.0f - f;
    const float w00 = gy * g, w01 = gy * f, w10 = g * fy, w11 = fy * f;
    double v = static_cast<double>(w00) * upper[2 * c];
    v += static_cast<double>(w01) * upper[2 * c + 1];
    v += static_cast<double>(w10) * lower[2 * c];
    v += static_cast<double>(w11) * lower[2 * c + 1];
    // The weights sum to 1 within a few float ulps, so v < 256.
    dst[c] = static_cast<uint8_t>(static_cast<int32_t>(v));
  }
}

void Zoom32Row_C(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                 float fy, std::size_t width) {
  const float gy = 1.0f - fy;
  for (std::size_t c = 0; c < width; ++c) {
    const float f = fx[c], g = 1.0f - f;
    for (int ch = 0; ch < 4; ++ch) {
      const float p00 = upper[8 * c + ch], p01 = upper[8 * c + 4 + ch];
      const float p10 = lower[8 * c + ch], p11 = lower[8 * c + 4 + ch];
      const float v = p00 * g * gy + p01 * f * gy + (p10 * g * fy + p11 * f * fy);
      dst[4 * c + ch] = static_cast<uint8_t>(std::clamp(std::lrint(v), 0L, 255L));
    }
  }
}

}  // namespace qbo
