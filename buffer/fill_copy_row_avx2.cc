#include <immintrin.h>

#include "buffer/fill_copy_row.h"
#include "frame/cpu.h"

namespace qbo {

void CopyRowBytes_AVX2(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail) {
  if (blocks * 16 >= kRepMinBytes && Cpu().fast_strings) {
    RepMovsb(dst, src, blocks * 16 + tail);
    return;
  }
  std::size_t i = 0;
  for (; i + 2 <= blocks; i += 2, dst += 32, src += 32) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst),
                        _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)));
  }
  if (i < blocks) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                     _mm_loadu_si128(reinterpret_cast<const __m128i*>(src)));
    dst += 16;
    src += 16;
  }
  CopyTailBytes(dst, src, tail);
}

void StreamCopy_AVX2(uint8_t* dst, const uint8_t* src, std::size_t size) {
  // Align the destination to 32 bytes for the streaming stores.
  while (size && (reinterpret_cast<uintptr_t>(dst) & 31)) {
    *dst++ = *src++;
    --size;
  }
  for (; size >= 64; size -= 64, dst += 64, src += 64) {
    const __m256i* s = reinterpret_cast<const __m256i*>(src);
    __m256i* d = reinterpret_cast<__m256i*>(dst);
    const __m256i a = _mm256_loadu_si256(s), b = _mm256_loadu_si256(s + 1);
    _mm256_stream_si256(d, a);
    _mm256_stream_si256(d + 1, b);
  }
  for (; size >= 8; size -= 8, dst += 8, src += 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst),
                     _mm_loadl_epi64(reinterpret_cast<const __m128i*>(src)));
  }
  for (; size; --size) *dst++ = *src++;
  _mm_sfence();
}

void Fill32_AVX2(uint32_t* dst, uint32_t value, std::size_t count) {
  if (count * 4 >= kRepMinBytes && Cpu().fast_strings) {
    RepStosd(dst, value, count);
    return;
  }
  const __m256i v = _mm256_set1_epi32(static_cast<int>(value));
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    __m256i* p = reinterpret_cast<__m256i*>(dst + i);
    _mm256_storeu_si256(p, v);
    _mm256_storeu_si256(p + 1, v);
    _mm256_storeu_si256(p + 2, v);
    _mm256_storeu_si256(p + 3, v);
  }
  for (; i + 8 <= count; i += 8) _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i), v);
  Fill32_SSE2(dst + i, value, count - i);
}

void Fill32Stream_AVX2(uint32_t* dst, uint32_t value, std::size_t count) {
  // Single words up to a 32-byte boundary, then whole vectors.
  std::size_t i = 0;
  for (; i < count && (reinterpret_cast<uintptr_t>(dst + i) & 31); ++i) {
    _mm_stream_si32(reinterpret_cast<int*>(dst + i), static_cast<int>(value));
  }
  const __m256i v = _mm256_set1_epi32(static_cast<int>(value));
  for (; i + 8 <= count; i += 8) _mm256_stream_si256(reinterpret_cast<__m256i*>(dst + i), v);
  Fill32Stream_SSE2(dst + i, value, count - i);
}

void SetAlpha_AVX2(uint32_t* dst, uint32_t alpha, std::size_t count) {
  const __m256i keep = _mm256_set1_epi32(0x00FFFFFF);
  const __m256i a = _mm256_set1_epi32(static_cast<int>(alpha << 24));
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    __m256i* p = reinterpret_cast<__m256i*>(dst + i);
    _mm256_storeu_si256(p, _mm256_or_si256(_mm256_and_si256(_mm256_loadu_si256(p), keep), a));
  }
  SetAlpha_SSE2(dst + i, alpha, count - i);
}

}  // namespace qbo
