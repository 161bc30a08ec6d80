// Planar 4:2:2 and interlaced 4:2:0 YUV to opaque 32-bit RGBA / BGRA, as
// one frame or as two field buffers. 4:2:0 chroma is interpolated within
// each field (the same quarter rule as the 4:2:0 to YUYV conversion), two
// output rows at a time, into four small scratch rows.
#include <cstddef>
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "frame/cpu.h"
#include "frame/kernel_table.h"
#include "frame/platform.h"
#include "frame/stream_fence.h"
#include "yuvlayout/field_chroma.h"

namespace qbo {
namespace {

struct PlanarSource {
  ConstPlane y, u, v;
};

PlanarSource MakeSource(const void* srcY, int32_t yPitch, const void* srcU, int32_t uPitch,
                        const void* srcV, int32_t vPitch) {
  return {{static_cast<const uint8_t*>(srcY), yPitch},
          {static_cast<const uint8_t*>(srcU), uPitch},
          {static_cast<const uint8_t*>(srcV), vPitch}};
}

// A destination of `rows` rows; with `flip` row 0 is the bottom one.
struct Target {
  uint8_t* base;
  int64_t pitch;
  int rows;
  bool flip;
  uint8_t* Row(int r) const { return RowAt(base, pitch, flip ? rows - 1 - r : r); }
};

// What one conversion runs: the row kernel, the standard's vectors and the
// width.
struct RowJob {
  PlanarToPixelsRowFn row;
  YuvToRgbVectors vectors;
  int32_t width;
  // Streams the rows of a frame of `rows` rows past the cache when it is
  // large (StreamFrameStores): 4:2:2 reads 2 bytes a pixel, 4:2:0 1.5, and
  // both write 4.
  RowJob ForFrame(int32_t rows, bool chroma420) const {
    RowJob job = *this;
    job.vectors.stream = StreamFrameStores(uint64_t{static_cast<uint32_t>(width)} *
                                           static_cast<uint32_t>(rows) * (chroma420 ? 11 : 12) /
                                           2);
    return job;
  }
  void Convert(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v) const {
    row(dst, y, u, v, width, &vectors);
  }
};

RowJob MakeJob(bool bgra, int32_t width, int32_t bt709) {
  const PlanarToRgbaKernels& k = Kernels().planar_to_rgba;
  return {bgra ? k.to_bgra : k.to_rgba, YuvToRgbVectorsFor(bt709 != 0), width};
}

void Convert422Frame(const RowJob& frame_job, void* dst, int32_t dstPitch,
                     const PlanarSource& src, int32_t height, int32_t flip) {
  if (frame_job.width <= 0 || height <= 0) return;
  const RowJob job = frame_job.ForFrame(height, false);
  const StreamFence fence(job.vectors.stream);
  const Target out = {static_cast<uint8_t*>(dst), dstPitch, height, flip != 0};
  for (int i = 0; i < height; ++i) {
    job.Convert(out.Row(i), src.y.Row(i), src.u.Row(i), src.v.Row(i));
  }
}

// Source rows 2j and 2j + 1 go to row j of dst0 and dst1; an odd last row
// is not converted.
void Convert422Split(const RowJob& frame_job, const Target (&out)[2], const PlanarSource& src,
                     int32_t height) {
  if (frame_job.width <= 0) return;
  const RowJob job = frame_job.ForFrame(height, false);
  const StreamFence fence(job.vectors.stream);
  for (int i = 0; i < 2 * (height / 2); ++i) {
    job.Convert(out[i % 2].Row(i / 2), src.y.Row(i), src.u.Row(i), src.v.Row(i));
  }
}

// The 4:2:0 forms: field f's row r goes to row r of field_out[f] (whose
// pitch walks the field). Rows go in frame order, top and bottom field by
// turns, one row at a time: every plane is then read, and a whole frame
// written, as one forward stream. Stepping each field two rows at a time
// (to mix a pair of chroma rows once for both) makes the writes jump back
// and forth, and on frames that do not stay in the cache that costs more
// than mixing the chroma row again.
void Convert420Fields(const RowJob& frame_job, const Target (&field_out)[2],
                      const PlanarSource& src, int32_t height) {
  const int h2 = height / 2;
  if (frame_job.width <= 0 || h2 < 1) return;
  const RowJob job = frame_job.ForFrame(2 * h2, true);
  const StreamFence fence(job.vectors.stream);
  const int samples = (job.width + 1) / 2;
  ScratchBuffer scratch(2 * static_cast<std::size_t>(samples));
  if (!scratch) return;
  uint8_t* const mixed_u = static_cast<uint8_t*>(scratch.get());
  uint8_t* const mixed_v = mixed_u + samples;
  const BlendChromaRowFn blend = Kernels().yuvlayout.blend_chroma;
  for (int j = 0; j < 2 * h2; ++j) {
    const int f = j & 1, r = j >> 1;
    const FieldChromaSource c = FieldChromaFor(r, h2, f, kPlainFieldChroma);
    const uint8_t* u = src.u.Row(c.a);
    const uint8_t* v = src.v.Row(c.a);
    if (c.a != c.b) {
      blend(mixed_u, u, src.u.Row(c.b), samples, &c.w);
      blend(mixed_v, v, src.v.Row(c.b), samples, &c.w);
      u = mixed_u;
      v = mixed_v;
    }
    job.Convert(field_out[f].Row(r), src.y.Row(j), u, v);
  }
}

void Convert420Frame(const RowJob& job, void* dst, int32_t dstPitch, const PlanarSource& src,
                     int32_t height, int32_t flip) {
  // Field f's row r is frame row 2r + f, counted from the bottom with flip:
  // each field is a view of every other frame row.
  const int h2 = height / 2;
  auto* base = static_cast<uint8_t*>(dst);
  const int64_t pitch = dstPitch;
  Target fields[2];
  for (int f = 0; f < 2; ++f) {
    const int64_t first = flip ? height - 1 - f : f;
    fields[f] = {RowAt(base, pitch, first), flip ? -2 * pitch : 2 * pitch, h2, false};
  }
  Convert420Fields(job, fields, src, height);
}

}  // namespace
}  // namespace qbo

using qbo::MakeJob;
using qbo::MakeSource;
using qbo::Target;

namespace {

// The two field buffers of the Split forms, height / 2 rows each.
struct SplitTargets {
  Target out[2];
  SplitTargets(void* dst0, int32_t pitch0, void* dst1, int32_t pitch1, int32_t height,
               int32_t flip)
      : out{{static_cast<uint8_t*>(dst0), pitch0, height / 2, flip != 0},
            {static_cast<uint8_t*>(dst1), pitch1, height / 2, flip != 0}} {}
};

}  // namespace

extern "C" {

QBO_API void QBO_CALLEE QN_CS_YUV422_RGBA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert422Frame(MakeJob(false, width, bt709), dst, dstPitch,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height, flip);
}

QBO_API void QBO_CALLEE QN_CS_YUV422_BGRA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert422Frame(MakeJob(true, width, bt709), dst, dstPitch,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height, flip);
}

QBO_API void QBO_CALLEE QN_CS_YUV422_RGBA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert422Split(MakeJob(false, width, bt709),
                       SplitTargets(dst0, dstPitch0, dst1, dstPitch1, height, flip).out,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height);
}

QBO_API void QBO_CALLEE QN_CS_YUV422_BGRA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert422Split(MakeJob(true, width, bt709),
                       SplitTargets(dst0, dstPitch0, dst1, dstPitch1, height, flip).out,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height);
}

QBO_API void QBO_CALLEE QN_CS_YUV420_RGBA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert420Frame(MakeJob(false, width, bt709), dst, dstPitch,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height, flip);
}

QBO_API void QBO_CALLEE QN_CS_YUV420_BGRA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert420Frame(MakeJob(true, width, bt709), dst, dstPitch,
                       MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height, flip);
}

QBO_API void QBO_CALLEE QN_CS_YUV420_RGBA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert420Fields(MakeJob(false, width, bt709),
                        SplitTargets(dst0, dstPitch0, dst1, dstPitch1, height, flip).out,
                        MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height);
}

QBO_API void QBO_CALLEE QN_CS_YUV420_BGRA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip) {
  qbo::Convert420Fields(MakeJob(true, width, bt709),
                        SplitTargets(dst0, dstPitch0, dst1, dstPitch1, height, flip).out,
                        MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), height);
}

}  // extern "C"
