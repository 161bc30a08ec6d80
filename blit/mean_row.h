// Rows of the area-mean stretches (32-bit pixels and YUYV).
//
// The mean works in single precision in two passes. The vertical pass
// folds the source rows of one destination row into an accumulator of four
// floats per source pixel (per YUYV group); the horizontal pass folds
// accumulator columns into destination pixels. An area of n source
// samples weighs its first sample by w0, its n - 2 middle samples by 1 and
// its last by w1; n < 2 reads the first sample alone. Operation order is
// part of the result and every level keeps it:
//   vertical    acc = ((w0 x first + float(sat16(sum of middles))) + w1 x last) x norm
//   horizontal  acc = (((w0 x A[k] + A[k + 1]) + ...) + w1 x A[k + n - 1]) x norm
// The middle rows are summed as 16-bit unsigned integers that saturate at
// 65535, so more than 257 rows of 255 saturate. Bytes are stored rounded
// to nearest (ties to even) and clamped to 0..255 (clamping first gives
// the same byte and stays defined for any float).
//
// Contracts
//   MeanVertRow(acc, rows, n, w0, w1, norm, begin, end)
//     rows[0] is the first row of the area and, when n >= 2, rows[1 ..
//     n - 2] the middle rows and rows[n - 1] the last; bytes begin .. end - 1
//     of each are read and acc[begin .. end - 1] written. _SSE2 takes
//     (end - begin) % 16 == 0, _AVX2 (end - begin) % 32 == 0.
//   MeanHorizRow(dst, acc, counts, weights, norm, width)
//     pixel i folds counts[i] accumulator pixels (four floats each) with
//     weights[2i], weights[2i + 1] starting at column k; k starts at 0 and
//     moves to k + n - 1 after a pixel with n >= 2. Writes `width` pixels.
//   YuyvExpandRow(quads, acc, groups)
//     group k of acc (Y0, U, Y1, V) gives quads 2k = (Y0, U, V, Y0) and
//     2k + 1 = (Y1, (U + U') x 0.5, (V + V') x 0.5, Y1), U' and V' the next
//     group's; the last group keeps its own chroma. Writes 2 x groups quads.
//   YuyvMeanHorizRow(dst, quads, counts, weights, norm, params, width)
//     the same fold over quads (Y, U, V, Y), then converts in single
//     precision with u' = u - 128, v' = v - 128:
//       R = v' x rV + y x rbY
//       G = gU x u' + (gV x v' + gY x y)
//       B = y x rbY2 + u' x bU
//     and stores R, G, B at params.order, alpha 255.
#ifndef QBO_BLIT_MEAN_ROW_H_
#define QBO_BLIT_MEAN_ROW_H_

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace qbo {

struct YuyvMeanParams {
  float g_terms[4];   // gY, gU, gV, 0
  float rb_terms[4];  // rbY, bU, rV, rbY2
  int red_byte;       // 2 for BGRA, 0 for RGBA
  int blue_byte;      // 0 for BGRA, 2 for RGBA
};

using MeanVertRowFn = void (*)(float* acc, const uint8_t* const* rows, int32_t n, float w0,
                               float w1, float norm, std::size_t begin, std::size_t end);
using MeanHorizRowFn = void (*)(uint8_t* dst, const float* acc, const int32_t* counts,
                                const float* weights, float norm, std::size_t width);
using YuyvExpandRowFn = void (*)(float* quads, const float* acc, std::size_t groups);
using YuyvMeanHorizRowFn = void (*)(uint8_t* dst, const float* quads, const int32_t* counts,
                                    const float* weights, float norm,
                                    const YuyvMeanParams* params, std::size_t width);

void MeanVertRow_C(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                   float norm, std::size_t begin, std::size_t end);
void MeanVertRow_SSE2(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                      float norm, std::size_t begin, std::size_t end);
void MeanVertRow_Any_SSE2(float* acc, const uint8_t* const* rows, int32_t n, float w0,
                          float w1, float norm, std::size_t begin, std::size_t end);
void MeanVertRow_AVX2(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                      float norm, std::size_t begin, std::size_t end);
void MeanVertRow_Any_AVX2(float* acc, const uint8_t* const* rows, int32_t n, float w0,
                          float w1, float norm, std::size_t begin, std::size_t end);

void MeanHorizRow_C(uint8_t* dst, const float* acc, const int32_t* counts, const float* weights,
                    float norm, std::size_t width);
void MeanHorizRow_SSE2(uint8_t* dst, const float* acc, const int32_t* counts,
                       const float* weights, float norm, std::size_t width);

void YuyvExpandRow_C(float* quads, const float* acc, std::size_t groups);
void YuyvExpandRow_SSE2(float* quads, const float* acc, std::size_t groups);

void YuyvMeanHorizRow_C(uint8_t* dst, const float* quads, const int32_t* counts,
                        const float* weights, float norm, const YuyvMeanParams* params,
                        std::size_t width);
void YuyvMeanHorizRow_SSE2(uint8_t* dst, const float* quads, const int32_t* counts,
                           const float* weights, float norm, const YuyvMeanParams* params,
                           std::size_t width);

// Where the horizontal walk goes after a pixel of `n` samples.
inline std::size_t MeanStep(int32_t n) { return n >= 2 ? static_cast<std::size_t>(n) - 1 : 0; }

// A float clamped to 0..255 and rounded to nearest, ties to even.
inline uint8_t MeanByte(float v) {
  const float clamped = v < 0.0f ? 0.0f : (v > 255.0f ? 255.0f : v);
  return static_cast<uint8_t>(std::nearbyint(clamped));
}

}  // namespace qbo

#endif  // QBO_BLIT_MEAN_ROW_H_
