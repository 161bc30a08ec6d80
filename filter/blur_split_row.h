// Rows of the vertical blur and the YUYV split.
//
// Contracts
//   BlurRow3(dst, above, centre, below, pixels, q)
//     per byte of `pixels` 4-byte pixels, with a, b, c the bytes of the
//     three source rows:
//       t = (a*128*q0 >> 16) + (b*128*q1 >> 16) + (c*128*q2 >> 16) + 16
//     summed in 16-bit arithmetic; out = ((uint16)t >> 5) & 0xFF. The low 8
//     bits are kept without clamping, so negative weights wrap. Reads
//     4 x pixels bytes of each row; dst must not overlap a source row.
//   YuyvSplitRow(y, u, v, src, pairs)
//     for each of `pairs` groups Y0 U Y1 V: Y0 Y1 to y, U to u, V to v.
//     Reads 4 x pairs bytes, writes 2 x pairs + pairs + pairs bytes.
#ifndef QBO_FILTER_BLUR_SPLIT_ROW_H_
#define QBO_FILTER_BLUR_SPLIT_ROW_H_

#include <cstdint>

namespace qbo {

// The three Q14 weights (upper, centre, lower row) as 16-bit values.
struct BlurWeights {
  int16_t q[3];
};

using BlurRow3Fn = void (*)(uint8_t* dst, const uint8_t* above, const uint8_t* centre,
                            const uint8_t* below, int32_t pixels, const BlurWeights* q);
using YuyvSplitRowFn = void (*)(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src,
                                int32_t pairs);

void BlurRow3_C(uint8_t* dst, const uint8_t* above, const uint8_t* centre, const uint8_t* below,
                int32_t pixels, const BlurWeights* q);
void BlurRow3_SSE2(uint8_t* dst, const uint8_t* above, const uint8_t* centre,
                   const uint8_t* below, int32_t pixels, const BlurWeights* q);
void BlurRow3_AVX2(uint8_t* dst, const uint8_t* above, const uint8_t* centre,
                   const uint8_t* below, int32_t pixels, const BlurWeights* q);

void YuyvSplitRow_C(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs);
void YuyvSplitRow_SSE2(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs);
void YuyvSplitRow_AVX2(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs);

// The Q14 weights of integer weights w (S = w0 + w1 + w2 in wrapping 32-bit
// arithmetic, not 0): q_i = trunc(w_i * (float)(1.0 / S) * 16384 + 0.5).
BlurWeights BlurWeightsOf(const int32_t w[3]);

}  // namespace qbo

#endif  // QBO_FILTER_BLUR_SPLIT_ROW_H_
