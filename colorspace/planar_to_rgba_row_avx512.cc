// AVX-512 rows of planar YUV to 32-bit, thirty-two pixels a step.
#include "colorspace/planar_to_rgba_avx512.h"

namespace qbo {
namespace {

struct PackStore {
  template <bool kEndsRow>
  static __m512i Chroma(const uint8_t* c) {
    return planar_avx512::PlaneChroma<kEndsRow>(c);
  }
  template <bool kBgra, bool kStream>
  static void Pixels(__m512i r, __m512i g, __m512i b, uint8_t* dst) {
    __m512i first, second;
    PackOpaquePixels_AVX512<kBgra>(r, g, b, &first, &second);
    Store64_AVX512<kStream>(dst, first);
    Store64_AVX512<kStream>(dst + 64, second);
  }
};

}  // namespace

QBO_DEFINE_PLANAR_ROWS_AVX512(AVX512, PackStore)

#undef QBO_DEFINE_PLANAR_ROWS_AVX512

}  // namespace qbo
