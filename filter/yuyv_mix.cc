// QN_Yuyv_Alpha_Mixin: a YUYV overlay, with or without an alpha plane, laid
// over a YUYV destination that may carry its own alpha plane.
#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"

extern "C" QBO_API int32_t QBO_CALLEE QN_Yuyv_Alpha_Mixin(
    uint8_t* dst, int32_t dstPitch, uint8_t* dstAlpha, int32_t dstAlphaPitch, int32_t dstWidth,
    int32_t dstHeight, const uint8_t* src, int32_t srcPitch, const uint8_t* srcAlpha,
    int32_t srcAlphaPitch, int32_t, int32_t, int32_t x, int32_t y, int32_t width,
    int32_t height) {
  // Unsigned clipping: a negative position or size reads as a huge one, so
  // a negative x or y clips everything away and a negative size stands for
  // "to the edge".
  const uint32_t ux = std::min(static_cast<uint32_t>(x), static_cast<uint32_t>(dstWidth));
  const uint32_t uw = std::min(static_cast<uint32_t>(width), static_cast<uint32_t>(dstWidth) - ux);
  const uint32_t uy = std::min(static_cast<uint32_t>(y), static_cast<uint32_t>(dstHeight));
  const uint32_t uh = std::min(static_cast<uint32_t>(height), static_cast<uint32_t>(dstHeight) - uy);
  const int32_t result = static_cast<int32_t>(uw);
  if (uw == 0 || uh == 0 || !dst || !src) return result;

  uint8_t* d = dst + static_cast<int64_t>(uy) * dstPitch + 2 * static_cast<int64_t>(ux);
  uint8_t* da = dstAlpha ? dstAlpha + static_cast<int64_t>(uy) * dstAlphaPitch + ux : nullptr;
  const uint8_t* s = src;
  const uint8_t* sa = srcAlpha;
  const qbo::KernelTable& k = qbo::Kernels();
  const int32_t pairs = static_cast<int32_t>(uw / 2);
  for (uint32_t row = 0; row < uh; ++row) {
    if (!sa) {
      k.buffer.stream_copy(d, s, static_cast<std::size_t>(uw) * 2);
      // Covered destination alpha becomes 1, not 255: the overlay marks the
      // area as written without claiming it opaque.
      if (da) std::memset(da, 1, uw);
    } else if (!da) {
      k.filter.yuyv_mix_opaque(d, nullptr, s, sa, pairs, nullptr);
    } else {
      k.filter.yuyv_mix_alpha(d, da, s, sa, pairs, qbo::g_tables.over_share);
    }
    d += dstPitch;
    s += srcPitch;
    if (da) da += dstAlphaPitch;
    if (sa) sa += srcAlphaPitch;
  }
  return result;
}
