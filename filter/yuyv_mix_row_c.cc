// Reference rows of the YUYV alpha mixing.
#include <algorithm>

#include "filter/yuyv_mix_row.h"

namespace qbo {
namespace {

inline uint8_t Clamp255(int v) { return static_cast<uint8_t>(std::clamp(v, 0, 255)); }

inline uint8_t MixOpaque(uint8_t d, uint8_t s, int a) {
  return Clamp255(d + (s * a >> 8) - (d * a >> 8));
}

inline uint8_t MixShare(uint8_t d, uint8_t s, int32_t w) {
  // (s - d) * w may be negative: >> is the floor, as pmulhw's high half.
  return Clamp255(d + ((s - d) * w >> 16));
}

}  // namespace

void YuyvMixOpaqueRow_C(uint8_t* dst, uint8_t*, const uint8_t* src, const uint8_t* src_alpha,
                        int32_t pairs, const int32_t*) {
  for (int32_t k = 0; k < pairs; ++k) {
    // The skip is a shortcut only: alpha 0 leaves every byte as it is.
    if (k % 2 == 0 && k + 1 < pairs && (src_alpha[2 * k] | src_alpha[2 * k + 1] |
                                        src_alpha[2 * k + 2] | src_alpha[2 * k + 3]) == 0) {
      ++k;
      continue;
    }
    const int a0 = src_alpha[2 * k], a1 = src_alpha[2 * k + 1];
    uint8_t* d = dst + 4 * k;
    const uint8_t* s = src + 4 * k;
    d[0] = MixOpaque(d[0], s[0], a0);
    d[1] = MixOpaque(d[1], s[1], a0);
    d[2] = MixOpaque(d[2], s[2], a1);
    d[3] = MixOpaque(d[3], s[3], a1);
  }
}

void YuyvMixAlphaRow_C(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                       const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  for (int32_t k = 0; k < pairs; ++k) {
    int32_t w[2];
    for (int i = 0; i < 2; ++i) {
      const int sa = src_alpha[2 * k + i], da = dst_alpha[2 * k + i];
      w[i] = share[sa * 256 + da];
      dst_alpha[2 * k + i] = Clamp255(da + sa - (da * sa >> 8));
    }
    uint8_t* d = dst + 4 * k;
    const uint8_t* s = src + 4 * k;
    d[0] = MixShare(d[0], s[0], w[0]);
    d[1] = MixShare(d[1], s[1], w[0]);
    d[2] = MixShare(d[2], s[2], w[1]);
    d[3] = MixShare(d[3], s[3], w[0]);
  }
}

}  // namespace qbo
