// The per-pixel YUV-to-RGB arithmetic that every YUV-to-RGB row of the
// library shares (packed YUYV and planar 4:2:2 / 4:2:0 alike), in scalar
// form. The SIMD forms live in yuv_to_rgb_core_sse2.h and
// yuv_to_rgb_core_avx2.h and give the same bytes.
//
// Arithmetic, for luma Y and a pixel's scaled chroma dU', dV':
//   term    = floor(coefficient * d' / 65536), each term by itself
//   R       = 32 Y + T(RFromV, dV') + 16
//   G       = 32 Y + T(GFromU, dU') + T(GFromV, dV') + 16
//   B       = 32 Y + T(BFromU, dU') + 16
//   channel = min(255, max(0, sum) >> 5)
// The coefficients are the 2^14 fixed-point vectors of the coefficient
// block; d' is chroma at the scale of 128, so a term is the product at
// 2^21 truncated to the scale of 32 that the +16 >> 5 rounds away. The
// sums lie in -6500 .. 14600, so the 16-bit saturating additions of the
// SIMD forms never saturate and plain int arithmetic here is the same.
//
// Chroma siting: pixel 2k of a pair takes its pair's chroma, dU' =
// 128 (U - 128); pixel 2k + 1 takes the mean of its pair's and the next
// pair's, dU' = 64 ((U - 128) + (Un - 128)); the last pair of a row has no
// next pair and its odd pixel takes its own chroma.
#ifndef QBO_COLORSPACE_YUV_TO_RGB_CORE_H_
#define QBO_COLORSPACE_YUV_TO_RGB_CORE_H_

#include <cstdint>

#include "frame/coef_block.h"

namespace qbo {

// The four YUV-to-RGB vectors of one standard: pointers into g_coef, eight
// equal lanes each. Rows read them through this block; the SIMD forms load
// them unaligned.
struct YuvToRgbVectors {
  const Lanes8* r_from_v;
  const Lanes8* g_from_u;
  const Lanes8* g_from_v;
  const Lanes8* b_from_u;
  // The frame streams its rows past the cache (StreamFrameStores). Rows
  // that have streaming stores use them where `dst` is aligned to their
  // store width; the bytes written are the same either way.
  bool stream = false;
};

// Whether a row writing at `dst` with `align`-byte stores streams them.
inline bool StreamsTo(const YuvToRgbVectors& v, const void* dst, uintptr_t align) {
  return v.stream && (reinterpret_cast<uintptr_t>(dst) & (align - 1)) == 0;
}

// `v` with stores through the cache: for blocks written to a scratch copy
// that is read straight back.
inline YuvToRgbVectors CachedStores(YuvToRgbVectors v) {
  v.stream = false;
  return v;
}

// The vectors of BT.709 when `bt709`, else of BT.601.
inline YuvToRgbVectors YuvToRgbVectorsFor(bool bt709) {
  if (bt709) return {&g_coef.RFromV709, &g_coef.GFromU709, &g_coef.GFromV709, &g_coef.BFromU709};
  return {&g_coef.RFromV601, &g_coef.GFromU601, &g_coef.GFromV601, &g_coef.BFromU601};
}

struct Rgb8 {
  uint8_t r, g, b;
};

inline constexpr int kChromaZero = 128;
inline constexpr int kHalfAt32 = 16;  // one half at the scale of 32

// Scaled chroma of the even pixel of a pair (its own sample) and of the odd
// pixel (the mean of its pair's and the next pair's samples, kept at full
// precision by scaling the sum by 64 instead of halving it).
constexpr int EvenPixelChroma(uint8_t c) { return (c - kChromaZero) * 128; }
constexpr int OddPixelChroma(uint8_t c, uint8_t c_next) {
  return ((c - kChromaZero) + (c_next - kChromaZero)) * 64;
}

// floor(coefficient * d / 65536): C++20 shifts negative values arithmetically.
inline int ChromaTerm(const Lanes8* coefficient, int d) { return (coefficient->v[0] * d) >> 16; }

constexpr uint8_t ClampShift5(int sum) {
  const int shifted = (sum < 0 ? 0 : sum) >> 5;
  return static_cast<uint8_t>(shifted > 255 ? 255 : shifted);
}

// One pixel from its luma and scaled chroma (du, dv as above).
inline Rgb8 YuvPixelToRgb(uint8_t y, int du, int dv, const YuvToRgbVectors& v) {
  const int base = 32 * y + kHalfAt32;
  return Rgb8{ClampShift5(base + ChromaTerm(v.r_from_v, dv)),
              ClampShift5(base + ChromaTerm(v.g_from_u, du) + ChromaTerm(v.g_from_v, dv)),
              ClampShift5(base + ChromaTerm(v.b_from_u, du))};
}

// Both pixels of a pair with chroma (u, v) followed by a pair with chroma
// (u_next, v_next); the last pair of a row passes its own chroma as next.
inline void YuvPairToRgb(uint8_t y0, uint8_t y1, uint8_t u, uint8_t v, uint8_t u_next,
                         uint8_t v_next, const YuvToRgbVectors& vectors, Rgb8 out[2]) {
  out[0] = YuvPixelToRgb(y0, EvenPixelChroma(u), EvenPixelChroma(v), vectors);
  out[1] = YuvPixelToRgb(y1, OddPixelChroma(u, u_next), OddPixelChroma(v, v_next), vectors);
}

// Stores an opaque pixel: B, G, R, 255 when kBgra, else R, G, B, 255.
template <bool kBgra>
inline void StoreOpaquePixel(uint8_t* dst, Rgb8 p) {
  dst[0] = kBgra ? p.b : p.r;
  dst[1] = p.g;
  dst[2] = kBgra ? p.r : p.b;
  dst[3] = 255;
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_YUV_TO_RGB_CORE_H_
