// AVX-512 rows of planar YUV to 32-bit, thirty-two pixels a step.
#include "colorspace/planar_to_rgba_avx512.h"

namespace qbo {
namespace {

struct PackStore {
  template <bool kEndsRow>
  static __m512i Chroma(const uint8_t* c) {
    return planar_avx512::PlaneChroma<kEndsRow>(c);
  }
  template <bool kBgra>
  static void Pixels(__m512i r, __m512i g, __m512i b, uint8_t* dst) {
    __m512i first, second;
    PackOpaquePixels_AVX512<kBgra>(r, g, b, &first, &second);
    _mm512_storeu_si512(dst, first);
    _mm512_storeu_si512(dst + 64, second);
  }
};

}  // namespace

using planar_avx512::AnyRow;
using planar_avx512::PlanarToPixelsRow;

void PlanarToRgbaRow_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<PackStore, false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<PackStore, true>(dst, y, u, v, width, *vectors);
}

void PlanarToRgbaRow_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width, const YuvToRgbVectors* vectors) {
  AnyRow<PackStore, false>(PlanarToRgbaRow_AVX512, dst, y, u, v, width, vectors);
}

void PlanarToBgraRow_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width, const YuvToRgbVectors* vectors) {
  AnyRow<PackStore, true>(PlanarToBgraRow_AVX512, dst, y, u, v, width, vectors);
}

}  // namespace qbo
