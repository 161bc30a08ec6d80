// Reference rows of the vertical blur and the YUYV split.
#include <cmath>

#include "filter/blur_split_row.h"
#include "frame/single_precision.h"

namespace qbo {
namespace {

constexpr int kRoundThirtySecond = 16;  // the sum is in 32nds: +16 >> 5

inline int16_t BlurTap(uint8_t sample, int16_t q) {
  return static_cast<int16_t>((static_cast<int32_t>(sample) << 7) * q >> 16);
}

}  // namespace

void BlurRow3_C(uint8_t* dst, const uint8_t* above, const uint8_t* centre, const uint8_t* below,
                int32_t pixels, const BlurWeights* q) {
  for (int32_t i = 0; i < pixels * 4; ++i) {
    const uint16_t t = static_cast<uint16_t>(BlurTap(above[i], q->q[0]) +
                                             BlurTap(centre[i], q->q[1]) +
                                             BlurTap(below[i], q->q[2]) + kRoundThirtySecond);
    dst[i] = static_cast<uint8_t>(t >> 5);
  }
}

void YuyvSplitRow_C(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs) {
  for (int32_t k = 0; k < pairs; ++k) {
    y[2 * k] = src[4 * k];
    u[k] = src[4 * k + 1];
    y[2 * k + 1] = src[4 * k + 2];
    v[k] = src[4 * k + 3];
  }
}

BlurWeights BlurWeightsOf(const int32_t w[3]) {
  const int32_t sum = static_cast<int32_t>(static_cast<uint32_t>(w[0]) +
                                           static_cast<uint32_t>(w[1]) +
                                           static_cast<uint32_t>(w[2]));
  const float scale = RoundToSingle(1.0 / static_cast<double>(static_cast<float>(sum)));
  BlurWeights q{};
  for (int i = 0; i < 3; ++i) {
    const double rounded =
        static_cast<double>(static_cast<float>(w[i]) * scale * 16384.0f) + 0.5;
    // A weight beyond 32 bits converts to the x86 "integer indefinite"
    // 0x80000000, whose low 16 bits are 0.
    const int32_t whole = std::fabs(rounded) < 2147483648.0 ? static_cast<int32_t>(rounded)
                                                            : INT32_MIN;
    q.q[i] = static_cast<int16_t>(whole);
  }
  return q;
}

}  // namespace qbo
