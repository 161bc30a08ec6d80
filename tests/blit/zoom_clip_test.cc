// Clipping of the 32-bit zoom's rectangles, case by case in the zoom's own
// single-precision steps.
#include <gtest/gtest.h>

#include <climits>

#include "blit/zoom_clip.h"

namespace qbo::test {
namespace {

struct ClipCase {
  const char* what;
  DwordZoomRects in;
  bool ok;
  // dst_x, dst_y, width, height, src_x, src_y, src_rect_width, src_rect_height
  int32_t out[8];
};

// Arguments: dstX, dstY, width, height, dstWidth, dstHeight,
//            srcX, srcY, srcRectWidth, srcRectHeight, srcWidth, srcHeight.
const ClipCase kClips[] = {
    {"inside", {2, 1, 8, 6, 16, 16, 0, 0, 8, 6, 16, 16}, true, {2, 1, 8, 6, 0, 0, 8, 6}},
    // t = (8 / 8) x -4 = -4: dstX 0 + 4, width 8 + 4, srcRectWidth 8 - 4.
    {"source left overhang widens",
     {0, 0, 8, 8, 16, 16, -4, 0, 8, 8, 16, 16}, true, {4, 0, 12, 8, 0, 0, 4, 8}},
    // t = (8 / 8) x -2 = -2: dstY 0 + 2, height 8 - 2, srcRectHeight 8 - 2.
    {"source top overhang shrinks",
     {0, 0, 8, 8, 16, 16, 0, -2, 8, 8, 16, 16}, true, {0, 2, 8, 6, 0, 0, 8, 6}},
    // scale 2, t = -2 x 2 = -4: srcX 0 + 4, width 6, srcRectWidth 16 - 4.
    {"destination left overhang",
     {-2, 0, 8, 8, 16, 16, 0, 0, 16, 8, 32, 16}, true, {0, 0, 6, 8, 4, 0, 12, 8}},
    // scale 2, t = -3 x 2 = -6: srcY 6, height 5, srcRectHeight 16 - 6.
    {"destination top overhang",
     {0, -3, 8, 8, 16, 16, 0, 0, 8, 16, 16, 32}, true, {0, 0, 8, 5, 0, 6, 8, 10}},
    // scale 1.5, t = -3 x 1.5 = -4.5: srcX trunc(4.5) = 4, srcRectWidth
    // trunc(12 - 4.5) = 7.
    {"odd ratio overhang truncates",
     {-3, 0, 8, 8, 16, 16, 0, 0, 12, 8, 32, 16}, true, {0, 0, 5, 8, 4, 0, 7, 8}},
    // e = 10 + 8 - 12 = 6: width 2, srcRectWidth 16 - trunc(6 x 2) = 4.
    {"destination right excess",
     {10, 0, 8, 8, 12, 16, 0, 0, 16, 8, 64, 16}, true, {10, 0, 2, 8, 0, 0, 4, 8}},
    // scale 0.5, e = 13 + 8 - 16 = 5: height 3, srcRectHeight 4 - trunc(2.5).
    {"destination bottom excess",
     {0, 13, 8, 8, 16, 16, 0, 0, 8, 4, 16, 16}, true, {0, 13, 8, 3, 0, 0, 8, 2}},
    // e = 60 + 16 - 64 = 12: srcRectWidth 4, width 8 - trunc(12 / 2) = 2.
    {"source right excess",
     {0, 0, 8, 8, 16, 16, 60, 0, 16, 8, 64, 16}, true, {0, 0, 2, 8, 60, 0, 4, 8}},
    // e = 5 + 6 - 8 = 3 at scale 0.75: srcRectHeight 3, height 8 - trunc(4) = 4.
    {"source bottom excess",
     {0, 0, 8, 8, 16, 16, 0, 5, 8, 6, 16, 8}, true, {0, 0, 8, 4, 0, 5, 8, 3}},
    {"srcX == srcWidth", {0, 0, 8, 8, 16, 16, 16, 0, 8, 8, 16, 16}, false, {}},
    {"srcY == srcHeight", {0, 0, 8, 8, 16, 16, 0, 16, 8, 8, 16, 16}, false, {}},
    {"dstX == dstWidth", {16, 0, 8, 8, 16, 16, 0, 0, 8, 8, 16, 16}, false, {}},
    {"dstY == dstHeight", {0, 16, 8, 8, 16, 16, 0, 0, 8, 8, 16, 16}, false, {}},
    {"zero width", {0, 0, 0, 8, 16, 16, 0, 0, 8, 8, 16, 16}, false, {}},
    {"zero source rectangle", {0, 0, 8, 8, 16, 16, 0, 0, 8, 0, 16, 16}, false, {}},
    {"zero buffer", {0, 0, 8, 8, 16, 0, 0, 0, 8, 8, 16, 16}, false, {}},
    {"destination slides off the left", {-8, 0, 8, 8, 16, 16, 0, 0, 8, 8, 16, 16}, false, {}},
    {"source slides off the top", {0, 0, 8, 8, 16, 16, 0, -8, 8, 8, 16, 16}, false, {}},
    {"dst overhang pushes the source past its end",
     {-12, 0, 16, 8, 16, 16, 0, 0, 16, 8, 10, 16}, false, {}},
    {"huge overhang leaves 32 bits",
     {INT32_MIN, 0, 8, 8, 16, 16, 0, 0, INT32_MAX, 8, 16, 16}, false, {}},
};

TEST(DwordZoomClip, ClipsStepByStep) {
  for (const ClipCase& c : kClips) {
    SCOPED_TRACE(c.what);
    DwordZoomRects r = c.in;
    ASSERT_EQ(ClipDwordZoom(&r), c.ok);
    if (!c.ok) continue;
    const int32_t got[8] = {r.dst_x, r.dst_y, r.width, r.height,
                            r.src_x, r.src_y, r.src_rect_width, r.src_rect_height};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(got[i], c.out[i]) << "field " << i;
    EXPECT_EQ(r.scale_x, static_cast<float>(c.in.src_rect_width) / c.in.width);
    EXPECT_EQ(r.scale_y, static_cast<float>(c.in.src_rect_height) / c.in.height);
  }
}

// Every field in turn at the ends of the int32 range: a clip that succeeds
// must leave both rectangles inside their buffers.
TEST(DwordZoomClip, ExtremesNeverLeaveTheBuffers) {
  const DwordZoomRects base{-1, 2, 7, 5, 12, 9, -2, 1, 9, 4, 11, 6};
  int32_t DwordZoomRects::*const fields[] = {
      &DwordZoomRects::dst_x,      &DwordZoomRects::dst_y,          &DwordZoomRects::width,
      &DwordZoomRects::height,     &DwordZoomRects::dst_width,      &DwordZoomRects::dst_height,
      &DwordZoomRects::src_x,      &DwordZoomRects::src_y,          &DwordZoomRects::src_rect_width,
      &DwordZoomRects::src_rect_height, &DwordZoomRects::src_width, &DwordZoomRects::src_height};
  for (auto field : fields) {
    for (int32_t value : {INT32_MIN, INT32_MIN + 1, -65536, -1, 0, 1, 65536, INT32_MAX - 1,
                          INT32_MAX}) {
      DwordZoomRects r = base;
      r.*field = value;
      SCOPED_TRACE(::testing::Message() << "value " << value);
      if (!ClipDwordZoom(&r)) continue;
      EXPECT_GE(r.width, 1);
      EXPECT_GE(r.height, 1);
      EXPECT_GE(r.dst_x, 0);
      EXPECT_GE(r.dst_y, 0);
      EXPECT_GE(r.src_x, 0);
      EXPECT_GE(r.src_y, 0);
      EXPECT_LE(int64_t{r.dst_x} + r.width, r.dst_width);
      EXPECT_LE(int64_t{r.dst_y} + r.height, r.dst_height);
      EXPECT_LE(int64_t{r.src_x} + r.src_rect_width, r.src_width);
      EXPECT_LE(int64_t{r.src_y} + r.src_rect_height, r.src_height);
    }
  }
}

}  // namespace
}  // namespace qbo::test
