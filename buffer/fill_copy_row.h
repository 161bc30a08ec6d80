// Rows of the fills and copies.
//
// Contracts
//   CopyRowBytes(dst, src, blocks, tail)
//     copies blocks x 16 bytes, then 8, 4, 2, 1 bytes for bits 3..0 of
//     `tail`, each following on from the last; any alignment; dst and src
//     must not overlap.
//   StreamCopy(dst, src, size)
//     copies `size` bytes forward: 64-byte blocks, then 8-byte words, then
//     bytes; the 64- and 8-byte stores bypass the cache where the level has
//     such stores. Any alignment; no overlap.
//   Fill32(dst, value, count)
//     stores `value` into `count` words.
//   Fill32Stream: the same with cache-bypassing stores; dst must be 4-byte
//     aligned (words up to the first 16-byte boundary are streamed singly).
//     It does not order its stores: a caller runs StreamFence once after
//     its last streaming row, before returning to code that may read them.
//   SetAlpha(dst, alpha, count)
//     pixel = (pixel & 0x00FFFFFF) | alpha << 24 for `count` pixels; `alpha`
//     is already reduced to 8 bits. Any alignment.
// Every level gives identical memory contents; levels differ in speed and in
// whether stores bypass the cache.
#ifndef QBO_BUFFER_FILL_COPY_ROW_H_
#define QBO_BUFFER_FILL_COPY_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

using CopyRowBytesFn = void (*)(uint8_t* dst, const uint8_t* src, std::size_t blocks,
                                unsigned tail);
using StreamCopyFn = void (*)(uint8_t* dst, const uint8_t* src, std::size_t size);
using Fill32Fn = void (*)(uint32_t* dst, uint32_t value, std::size_t count);
using StreamFenceFn = void (*)();
using SetAlphaFn = void (*)(uint32_t* dst, uint32_t alpha, std::size_t count);

void CopyRowBytes_C(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail);
void CopyRowBytes_SSE2(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail);
void CopyRowBytes_AVX2(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail);

void StreamCopy_C(uint8_t* dst, const uint8_t* src, std::size_t size);
void StreamCopy_SSE2(uint8_t* dst, const uint8_t* src, std::size_t size);
void StreamCopy_AVX2(uint8_t* dst, const uint8_t* src, std::size_t size);

void Fill32_C(uint32_t* dst, uint32_t value, std::size_t count);
void Fill32_SSE2(uint32_t* dst, uint32_t value, std::size_t count);
void Fill32_AVX2(uint32_t* dst, uint32_t value, std::size_t count);
void Fill32Stream_SSE2(uint32_t* dst, uint32_t value, std::size_t count);
void Fill32Stream_AVX2(uint32_t* dst, uint32_t value, std::size_t count);

void StreamFence_C();
void StreamFence_SSE2();

void SetAlpha_C(uint32_t* dst, uint32_t alpha, std::size_t count);
void SetAlpha_SSE2(uint32_t* dst, uint32_t alpha, std::size_t count);
void SetAlpha_AVX2(uint32_t* dst, uint32_t alpha, std::size_t count);

// Runs this long and longer go to `rep movsb` / `rep stosd` on CPUs with
// fast strings: below it their start-up costs more than vector stores.
inline constexpr std::size_t kRepMinBytes = 2048;

// The x86 string instructions. With fast strings they move whole cache
// lines without first reading the destination's lines, which vector
// stores cannot avoid; that is where most of a cached fill's time goes.
inline void RepMovsb(uint8_t* dst, const uint8_t* src, std::size_t bytes) {
  __asm__ volatile("rep movsb" : "+D"(dst), "+S"(src), "+c"(bytes) : : "memory");
}
inline void RepStosd(uint32_t* dst, uint32_t value, std::size_t count) {
  __asm__ volatile("rep stosl" : "+D"(dst), "+c"(count) : "a"(value) : "memory");
}

// The shared tail of CopyRowBytes: 8, 4, 2, 1 bytes for bits 3..0.
inline void CopyTailBytes(uint8_t* dst, const uint8_t* src, unsigned tail) {
  for (unsigned n = 8; n; n >>= 1) {
    if (tail & n) {
      __builtin_memcpy(dst, src, n);
      dst += n;
      src += n;
    }
  }
}

}  // namespace qbo

#endif  // QBO_BUFFER_FILL_COPY_ROW_H_
