// AVX-512 VBMI rows of planar YUV to 32-bit: the AVX-512 rows with each
// pixel's two chroma samples and the pixels' final order placed by
// two-register byte permutes.
#include "colorspace/planar_to_rgba_avx512.h"
#include "colorspace/yuv_to_rgb_core_avx512vbmi.h"

#include <array>

namespace qbo {
namespace {

// Byte pairs (c_k, c_k) for pixel 2k and (c_k, c_k+1) for pixel 2k + 1
// out of samples 0..15 (first register) and 1..16 (second register): c_16
// is byte 15 of the second. In the block that ends a row the second
// register repeats the first, so the last odd pixel takes c_15 twice.
constexpr std::array<uint8_t, 64> SamplePairIndex() {
  std::array<uint8_t, 64> index{};
  for (int k = 0; k < 16; ++k) {
    index[4 * k] = index[4 * k + 1] = index[4 * k + 2] = static_cast<uint8_t>(k);
    index[4 * k + 3] = static_cast<uint8_t>(k < 15 ? k + 1 : 64 + 15);
  }
  return index;
}
constexpr std::array<uint8_t, 64> kSamplePairs = SamplePairIndex();

struct PermuteStore {
  template <bool kEndsRow>
  static __m512i Chroma(const uint8_t* c) {
    const __m512i own = _mm512_castsi128_si512(planar_avx512::Load16(c));
    const __m512i next = kEndsRow ? own : _mm512_castsi128_si512(planar_avx512::Load16(c + 1));
    return PairedChroma_AVX512(
        _mm512_permutex2var_epi8(own, _mm512_loadu_si512(kSamplePairs.data()), next));
  }
  template <bool kBgra, bool kStream>
  static void Pixels(__m512i r, __m512i g, __m512i b, uint8_t* dst) {
    StoreOpaquePixels_AVX512VBMI<kBgra, kStream>(r, g, b, dst);
  }
};

}  // namespace

QBO_DEFINE_PLANAR_ROWS_AVX512(AVX512VBMI, PermuteStore)

#undef QBO_DEFINE_PLANAR_ROWS_AVX512

}  // namespace qbo
