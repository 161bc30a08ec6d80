// QN_BitBlt: same-size block transfer (copy or alpha over) with field
// selection; rectangles of differing sizes go to the stretch.
#include "QuillonBufferOperaU.h"
#include "blit/blit_args.h"
#include "blit/stretch_blt.h"
#include "buffer/copy_row_bytes.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"

namespace qbo {
namespace {

// Clips the destination rectangle and the source position against their
// buffers; one width and one height serve both rectangles. Only the
// destination width is tested as a buffer size, not its height: a zero or
// negative dstHeight fails later through the clipping instead.
bool ClipBlitRects(BlitArgs& a) {
  if (a.dst_width < 1 || a.src_width < 1 || a.src_height < 1) return false;
  if (a.dst_x >= a.dst_width || a.dst_y >= a.dst_height || a.src_x >= a.src_width ||
      a.src_y >= a.src_height) {
    return false;
  }
  if (a.dst_x < 0) {
    a.width += a.dst_x;
    a.src_x -= a.dst_x;
    a.dst_x = 0;
  }
  if (a.dst_y < 0) {
    a.height += a.dst_y;
    a.src_y -= a.dst_y;
    a.dst_y = 0;
  }
  if (a.src_x < 0) {
    a.width += a.src_x;
    a.dst_x -= a.src_x;
    a.src_x = 0;
  }
  if (a.src_y < 0) {
    a.height += a.src_y;
    a.dst_y -= a.src_y;
    a.src_y = 0;
  }
  if (a.src_x + a.width > a.src_width) a.width = a.src_width - a.src_x;
  if (a.src_y + a.height > a.src_height) a.height = a.src_height - a.src_y;
  if (a.dst_x + a.width > a.dst_width) a.width = a.dst_width - a.dst_x;
  if (a.dst_y + a.height > a.dst_height) a.height = a.dst_height - a.dst_y;
  return a.width >= 1 && a.height >= 1;
}

// Field stepping: the start row moves to the field's parity, the height
// stays, so the last row written may lie one row below the clipped
// rectangle (and the last row read one below the source rectangle).
bool SetFieldStepping(BlitArgs& a, int64_t* row_step) {
  switch (a.field) {
    case kFieldAll:
      *row_step = 1;
      return true;
    case kFieldEven:
    case kFieldOdd: {
      const int64_t wanted_parity = a.field == kFieldEven ? 0 : 1;
      if ((a.dst_y % 2 != 0 ? 1 : 0) != wanted_parity) {
        a.dst_y += 1;
        a.src_y += 1;
      }
      if (a.dst_y >= a.dst_height || a.src_y >= a.src_height) return false;
      *row_step = 2;
      return true;
    }
    default:
      return false;
  }
}

int32_t SameSizeBlit(BlitArgs a) {
  if (!a.dst || !a.src) return 0;
  int64_t row_step = 1;
  if (!ClipBlitRects(a) || !SetFieldStepping(a, &row_step)) return 0;
  uint8_t* dst_row = PixelAddress(a.dst, a.dst_x, a.dst_y, a.dst_width);
  const uint8_t* src_row = PixelAddress(a.src, a.src_x, a.src_y, a.src_width);
  const int64_t dst_step = a.dst_width * row_step * 4;
  const int64_t src_step = a.src_width * row_step * 4;
  const std::size_t width = static_cast<std::size_t>(a.width);
  const BlitKernels& k = Kernels().blit;
  const BlendRowFn blend = a.mode == kBlitOver ? k.blend_over : k.blend_over_inverted;
  for (int64_t r = 0; r < a.height; r += row_step) {
    if (a.mode == kBlitCopy) {
      CopyRowBytes(dst_row, src_row, width / 4, static_cast<unsigned>(width % 4) * 4);
    } else {
      blend(dst_row, src_row, g_tables.over_share, width);
    }
    dst_row = AdvanceBytes(dst_row, dst_step);
    src_row = AdvanceBytes(src_row, src_step);
  }
  return 1;
}

}  // namespace

BlitArgs MakeBlitArgs(void* dst, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
                      int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcX,
                      int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight,
                      int32_t srcWidth, int32_t srcHeight, int32_t mode, int32_t field) {
  return BlitArgs{static_cast<uint8_t*>(dst), dstX, dstY, width, height, dstWidth, dstHeight,
                  static_cast<const uint8_t*>(src), srcX, srcY, srcRectWidth, srcRectHeight,
                  srcWidth, srcHeight, mode, field};
}

}  // namespace qbo

extern "C" QBO_API int32_t QBO_CALLEE QN_BitBlt(void* dst, int32_t dstX, int32_t dstY,
                                               int32_t width, int32_t height, int32_t dstWidth,
                                               int32_t dstHeight, const void* src, int32_t srcX,
                                               int32_t srcY, int32_t srcRectWidth,
                                               int32_t srcRectHeight, int32_t srcWidth,
                                               int32_t srcHeight, int32_t mode, int32_t field) {
  const qbo::BlitArgs args =
      qbo::MakeBlitArgs(dst, dstX, dstY, width, height, dstWidth, dstHeight, src, srcX, srcY,
                        srcRectWidth, srcRectHeight, srcWidth, srcHeight, mode, field);
  if (!src) return QBO_E_FAIL;
  if (mode != qbo::kBlitOver && mode != qbo::kBlitCopy && mode != qbo::kBlitOverInverted) {
    return QBO_E_FAIL;
  }
  if (width != srcRectWidth || height != srcRectHeight) return qbo::Stretch(args);
  return qbo::SameSizeBlit(args);
}
