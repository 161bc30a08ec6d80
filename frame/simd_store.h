// Vector stores through or past the cache, for rows that stream a large
// frame's output (StreamFrameStores). Include only from files built for
// AVX2 or AVX-512; internal to each including file, as those are compiled
// for different instruction sets.
#ifndef QBO_FRAME_SIMD_STORE_H_
#define QBO_FRAME_SIMD_STORE_H_

#include <immintrin.h>

#include <cstdint>

namespace qbo {
namespace {

#if defined(__AVX2__)
// 32 bytes; with kStream past the cache, to a 32-byte aligned p.
template <bool kStream>
inline void Store32_AVX2(uint8_t* p, __m256i v) {
  if constexpr (kStream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), v);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  }
}
#endif

#if defined(__AVX512F__)
// 64 bytes; with kStream past the cache, to a 64-byte aligned p.
template <bool kStream>
inline void Store64_AVX512(uint8_t* p, __m512i v) {
  if constexpr (kStream) {
    _mm512_stream_si512(reinterpret_cast<__m512i*>(p), v);
  } else {
    _mm512_storeu_si512(p, v);
  }
}
#endif

}  // namespace
}  // namespace qbo

#endif  // QBO_FRAME_SIMD_STORE_H_
