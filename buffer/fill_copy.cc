// Fills, copies, alpha fills and the in-place flip.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "buffer/copy_row_bytes.h"
#include "frame/cpu.h"
#include "frame/kernel_table.h"
#include "frame/platform.h"

using qbo::Kernels;

namespace {

// Row r of a 32-bit image at `base`: pitch / 4 pixels a row (arithmetic
// shift), so a pitch that is not a multiple of 4 is rounded toward minus
// infinity. Computed in 64 bits so no product of 32-bit arguments overflows.
uint32_t* PixelAt(void* base, int32_t pitch, int64_t row, int32_t column) {
  const int64_t pixels_per_row = pitch >> 2;
  const int64_t offset = (row * pixels_per_row + column) * 4;
  return reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(base) + offset);
}

// Fills stream past the cache budget; a copy fills the cache from its
// source too, so it streams past half of it.
std::size_t StreamFillAbove() { return qbo::StreamStoresAbove(); }

}  // namespace

extern "C" {

// A negative count is the caller's error; it writes nothing here rather
// than the stray words its low bits would otherwise select.
QBO_API int32_t QBO_CALLEE QN_MemsetDWORD(void* dst, uint32_t value, int32_t count) {
  if (count <= 0) return 1;
  const auto& k = Kernels().buffer;
  const auto words = static_cast<std::size_t>(count);
  // Streaming stores need whole words; a host's odd address fills cached.
  if (words * 4 > StreamFillAbove() && (reinterpret_cast<uintptr_t>(dst) & 3) == 0) {
    k.fill32_stream(static_cast<uint32_t*>(dst), value, words);
    k.stream_fence();
  } else {
    k.fill32(static_cast<uint32_t*>(dst), value, words);
  }
  return 1;
}

// A negative size is treated like 0: nothing is copied and the result is
// null.
QBO_API void* QBO_CALLEE QN_Memcpy(void* dst, const void* src, int32_t size) {
  if (size <= 0 || !src || !dst) return nullptr;
  const auto bytes = static_cast<std::size_t>(size);
  if (bytes > StreamFillAbove() / 2) {
    Kernels().buffer.stream_copy(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src),
                                 bytes);
  } else {
    qbo::CopyBytes(dst, src, bytes);
  }
  return dst;
}

QBO_API void* QBO_CALLEE QN_Clear(void* dst, int32_t pitch, int32_t left, int32_t top,
                                  int32_t width, int32_t bottom, uint32_t color) {
  if (!dst) return nullptr;
  uint32_t* first = PixelAt(dst, pitch, top, left);
  const std::size_t count = width > 0 ? static_cast<std::size_t>(width) : 0;
  const int64_t rows = bottom > top ? int64_t{bottom} - top + 1 : 1;
  const bool stream = (reinterpret_cast<uintptr_t>(first) & 15) == 0 &&
                      static_cast<uint64_t>(rows) * count * 4 > StreamFillAbove();
  const qbo::Fill32Fn fill = stream ? Kernels().buffer.fill32_stream : Kernels().buffer.fill32;
  // Row `top` is always filled; then rows follow until the one just filled
  // is at or past `bottom`.
  for (int64_t row = top;; ++row) {
    fill(PixelAt(dst, pitch, row, left), color, count);
    if (row >= bottom) break;
  }
  if (stream) Kernels().buffer.stream_fence();
  return dst;
}

// Negative sizes set nothing.
QBO_API void* QBO_CALLEE QN_AlphaMemSet(void* dst, int32_t alpha, int32_t width,
                                        int32_t height) {
  if (!dst) return nullptr;
  if (width <= 0 || height <= 0) return dst;
  // Rows are contiguous, so the rectangle is one run of pixels.
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  Kernels().buffer.set_alpha(static_cast<uint32_t*>(dst), static_cast<uint32_t>(alpha) & 0xFFu,
                             count);
  return dst;
}

QBO_API int32_t QBO_CALLEE QN_OverTurnSelf(void* buffer, int32_t pitch, int32_t height) {
  if (!buffer || pitch < 0 || height < 0) return 0;
  qbo::ScratchBuffer temp(static_cast<std::size_t>(pitch));
  if (!temp) return 0;
  const std::size_t bytes = static_cast<std::size_t>(pitch);
  auto* base = static_cast<uint8_t*>(buffer);
  for (int32_t i = 0; i < height / 2; ++i) {
    uint8_t* upper = base + static_cast<std::size_t>(i) * bytes;
    uint8_t* lower = base + static_cast<std::size_t>(height - 1 - i) * bytes;
    qbo::CopyBytes(temp.get(), upper, bytes);
    qbo::CopyBytes(upper, lower, bytes);
    qbo::CopyBytes(lower, temp.get(), bytes);
  }
  return 1;
}

QBO_API void QBO_CALLEE QN_CalMask(int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                                   int32_t, int32_t, int32_t, int32_t) {}

QBO_API int32_t QBO_CALLEE QN_ColorMixLine(int32_t, int32_t, int32_t) { return 1; }

}  // extern "C"
