#include <emmintrin.h>

#include <cstring>

#include "buffer/fill_copy_row.h"
#include "frame/cpu.h"

namespace qbo {

void CopyRowBytes_SSE2(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail) {
  if (blocks * 16 >= kRepMinBytes && Cpu().fast_strings) {
    RepMovsb(dst, src, blocks * 16 + tail);
    return;
  }
  for (std::size_t i = 0; i < blocks; ++i, dst += 16, src += 16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                     _mm_loadu_si128(reinterpret_cast<const __m128i*>(src)));
  }
  CopyTailBytes(dst, src, tail);
}

void StreamCopy_SSE2(uint8_t* dst, const uint8_t* src, std::size_t size) {
  // Non-temporal stores need an aligned destination: bring it to 16 bytes
  // with ordinary byte stores first. The bytes written are the same.
  while (size && (reinterpret_cast<uintptr_t>(dst) & 15)) {
    *dst++ = *src++;
    --size;
  }
  for (; size >= 64; size -= 64, dst += 64, src += 64) {
    const __m128i* s = reinterpret_cast<const __m128i*>(src);
    __m128i* d = reinterpret_cast<__m128i*>(dst);
    const __m128i a = _mm_loadu_si128(s), b = _mm_loadu_si128(s + 1);
    const __m128i c = _mm_loadu_si128(s + 2), e = _mm_loadu_si128(s + 3);
    _mm_stream_si128(d, a);
    _mm_stream_si128(d + 1, b);
    _mm_stream_si128(d + 2, c);
    _mm_stream_si128(d + 3, e);
  }
  for (; size >= 8; size -= 8, dst += 8, src += 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst),
                     _mm_loadl_epi64(reinterpret_cast<const __m128i*>(src)));
  }
  for (; size; --size) *dst++ = *src++;
  _mm_sfence();
}

void Fill32_SSE2(uint32_t* dst, uint32_t value, std::size_t count) {
  if (count * 4 >= kRepMinBytes && Cpu().fast_strings) {
    RepStosd(dst, value, count);
    return;
  }
  const __m128i v = _mm_set1_epi32(static_cast<int>(value));
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), v);
  for (; i < count; ++i) std::memcpy(dst + i, &value, 4);
}

void Fill32Stream_SSE2(uint32_t* dst, uint32_t value, std::size_t count) {
  const __m128i v = _mm_set1_epi32(static_cast<int>(value));
  std::size_t i = 0;
  for (; i < count && (reinterpret_cast<uintptr_t>(dst + i) & 15); ++i) {
    _mm_stream_si32(reinterpret_cast<int*>(dst + i), static_cast<int>(value));
  }
  for (; i + 4 <= count; i += 4) _mm_stream_si128(reinterpret_cast<__m128i*>(dst + i), v);
  for (; i < count; ++i) _mm_stream_si32(reinterpret_cast<int*>(dst + i), static_cast<int>(value));
}

void StreamFence_SSE2() { _mm_sfence(); }

void SetAlpha_SSE2(uint32_t* dst, uint32_t alpha, std::size_t count) {
  const __m128i keep = _mm_set1_epi32(0x00FFFFFF);
  const __m128i a = _mm_set1_epi32(static_cast<int>(alpha << 24));
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    __m128i* p = reinterpret_cast<__m128i*>(dst + i);
    _mm_storeu_si128(p, _mm_or_si128(_mm_and_si128(_mm_loadu_si128(p), keep), a));
  }
  SetAlpha_C(dst + i, alpha, count - i);
}

}  // namespace qbo
