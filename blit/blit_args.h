// The 16 arguments the block transfer and the stretches share, widened to
// 64 bits so no clipping sum or product of int32 values can overflow, and
// the pixel addressing of pitchless 32-bit buffers.
#ifndef QBO_BLIT_BLIT_ARGS_H_
#define QBO_BLIT_BLIT_ARGS_H_

#include <cstdint>

namespace qbo {

enum BlitMode : int32_t { kBlitOver = 0, kBlitCopy = 1, kBlitOverInverted = 2 };
enum FieldSelect : int32_t { kFieldAll = 0, kFieldEven = 1, kFieldOdd = 2 };

struct BlitArgs {
  uint8_t* dst;
  int64_t dst_x, dst_y, width, height, dst_width, dst_height;
  const uint8_t* src;
  int64_t src_x, src_y, src_rect_width, src_rect_height, src_width, src_height;
  int32_t mode, field;
};

// Byte address of pixel (x, y) in a buffer `pitch_pixels` wide. The offset
// is formed in unsigned 64-bit arithmetic: arguments that describe a buffer
// larger than the address space wrap instead of overflowing.
template <typename Byte>
inline Byte* PixelAddress(Byte* base, int64_t x, int64_t y, int64_t pitch_pixels) {
  const uint64_t offset = (static_cast<uint64_t>(y) * static_cast<uint64_t>(pitch_pixels) +
                           static_cast<uint64_t>(x)) * 4u;
  return reinterpret_cast<Byte*>(reinterpret_cast<uintptr_t>(base) + offset);
}

// Moves a byte pointer by a signed byte count without signed overflow.
template <typename Byte>
inline Byte* AdvanceBytes(Byte* p, int64_t bytes) {
  return reinterpret_cast<Byte*>(reinterpret_cast<uintptr_t>(p) + static_cast<uint64_t>(bytes));
}

}  // namespace qbo

#endif  // QBO_BLIT_BLIT_ARGS_H_
