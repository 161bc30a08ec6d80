#include <cstring>

#include "buffer/fill_copy_row.h"

namespace qbo {

namespace {
constexpr std::size_t kBlock = 16;
constexpr std::size_t kStreamBlock = 64;
constexpr std::size_t kWord = 8;
}  // namespace

void CopyRowBytes_C(uint8_t* dst, const uint8_t* src, std::size_t blocks, unsigned tail) {
  for (std::size_t i = 0; i < blocks; ++i) {
    std::memcpy(dst, src, kBlock);
    dst += kBlock;
    src += kBlock;
  }
  CopyTailBytes(dst, src, tail);
}

void StreamCopy_C(uint8_t* dst, const uint8_t* src, std::size_t size) {
  for (; size >= kStreamBlock; size -= kStreamBlock, dst += kStreamBlock, src += kStreamBlock) {
    std::memcpy(dst, src, kStreamBlock);
  }
  for (; size >= kWord; size -= kWord, dst += kWord, src += kWord) std::memcpy(dst, src, kWord);
  for (; size; --size) *dst++ = *src++;
}

// Hosts may pass any byte address; the stores go through memcpy so that
// an unaligned destination is as well defined as an aligned one.
void Fill32_C(uint32_t* dst, uint32_t value, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) std::memcpy(dst + i, &value, 4);
}

// The reference rows store normally; there is nothing to order.
void StreamFence_C() {}

void SetAlpha_C(uint32_t* dst, uint32_t alpha, std::size_t count) {
  const uint32_t a = alpha << 24;
  for (std::size_t i = 0; i < count; ++i) {
    uint32_t p;
    std::memcpy(&p, dst + i, 4);
    p = (p & 0x00FFFFFFu) | a;
    std::memcpy(dst + i, &p, 4);
  }
}

}  // namespace qbo
