// AVX-512 VBMI rows of planar YUV to 32-bit: the AVX-512 rows with the
// pixels put in order by byte permutes (StoreOpaquePixels_AVX512VBMI).
#include "colorspace/planar_to_rgba_avx512.h"
#include "colorspace/yuv_to_rgb_core_avx512vbmi.h"

namespace qbo {
namespace {

struct PermuteStore {
  template <bool kBgra>
  static void Pixels(__m512i r, __m512i g, __m512i b, uint8_t* dst) {
    StoreOpaquePixels_AVX512VBMI<kBgra>(r, g, b, dst);
  }
};

}  // namespace

using planar_avx512::AnyRow;
using planar_avx512::PlanarToPixelsRow;

void PlanarToRgbaRow_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<PermuteStore, false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<PermuteStore, true>(dst, y, u, v, width, *vectors);
}

void PlanarToRgbaRow_Any_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width, const YuvToRgbVectors* vectors) {
  AnyRow<PermuteStore, false>(PlanarToRgbaRow_AVX512VBMI, dst, y, u, v, width, vectors);
}

void PlanarToBgraRow_Any_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width, const YuvToRgbVectors* vectors) {
  AnyRow<PermuteStore, true>(PlanarToBgraRow_AVX512VBMI, dst, y, u, v, width, vectors);
}

}  // namespace qbo
