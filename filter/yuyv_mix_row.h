// Rows of the YUYV alpha mixing.
//
// Contracts (both rows mix 2 x `pairs` pixels; any alignment; the
// destination must not overlap a source)
//   YuyvMixOpaqueRow(dst, dst_alpha, src, src_alpha, pairs, share)
//     onto an opaque destination; dst_alpha and share are not read. Per byte
//     with the alpha a of the byte's pixel (Y0 and U belong to the pair's
//     first pixel, Y1 and V to its second):
//       d = clamp(d + (s*a >> 8) - (d*a >> 8), 0, 255)
//     Groups of four pixels whose alphas are all 0 are left as they are.
//   YuyvMixAlphaRow(dst, dst_alpha, src, src_alpha, pairs, share)
//     alpha over alpha: per pixel with source alpha sa and destination alpha
//     da, w = share[sa * 256 + da] (the Q15 OverShare table) and
//       da' = clamp(da + sa - (da*sa >> 8), 0, 255)
//       d   = clamp(d + ((s - d) * w >> 16), 0, 255)
//     The >> 16 of a Q15 share moves an opaque source only half-way; that
//     halving is part of the mixing. Y0, U and V use the pair's first
//     pixel's share, Y1 the second's.
#ifndef QBO_FILTER_YUYV_MIX_ROW_H_
#define QBO_FILTER_YUYV_MIX_ROW_H_

#include <cstdint>

namespace qbo {

using YuyvMixRowFn = void (*)(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                              const uint8_t* src_alpha, int32_t pairs, const int32_t* share);

void YuyvMixOpaqueRow_C(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                        const uint8_t* src_alpha, int32_t pairs, const int32_t* share);
void YuyvMixOpaqueRow_SSE2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                           const uint8_t* src_alpha, int32_t pairs, const int32_t* share);
void YuyvMixOpaqueRow_AVX2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                           const uint8_t* src_alpha, int32_t pairs, const int32_t* share);

void YuyvMixAlphaRow_C(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                       const uint8_t* src_alpha, int32_t pairs, const int32_t* share);
void YuyvMixAlphaRow_SSE2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                          const uint8_t* src_alpha, int32_t pairs, const int32_t* share);
void YuyvMixAlphaRow_AVX2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                          const uint8_t* src_alpha, int32_t pairs, const int32_t* share);

// The 16-bit weights of `pairs` YUYV pairs for the SIMD alpha-over rows,
// four a pair in byte order Y0 U Y1 V: the first pixel's share, except for
// Y1, which takes the second's.
inline void SpreadShares(int16_t* w, const uint8_t* src_alpha, const uint8_t* dst_alpha,
                         int pairs, const int32_t* share) {
  for (int p = 0; p < pairs; ++p) {
    const int32_t w0 = share[src_alpha[2 * p] * 256 + dst_alpha[2 * p]];
    const int32_t w1 = share[src_alpha[2 * p + 1] * 256 + dst_alpha[2 * p + 1]];
    w[4 * p] = w[4 * p + 1] = w[4 * p + 3] = static_cast<int16_t>(w0);
    w[4 * p + 2] = static_cast<int16_t>(w1);
  }
}

}  // namespace qbo

#endif  // QBO_FILTER_YUYV_MIX_ROW_H_
