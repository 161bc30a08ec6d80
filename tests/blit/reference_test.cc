// The blit rows and plans worked by hand: alpha blending, bilinear and
// area-mean rows, zoom blending, and the stretch plan's clipping and field
// steps.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "blit/bilinear_row.h"
#include "blit/blend_row.h"
#include "blit/mean_row.h"
#include "blit/stretch_blt.h"
#include "blit/stretch_plan.h"
#include "blit/zoom_row.h"
#include "frame/lookup_tables.h"
#include "tests/blit/blit_test_util.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

const int32_t* Share() { return g_tables.over_share; }

struct BlendCase {
  const char* name;
  uint8_t s[4];
  uint8_t d[4];
  bool inverted;
  uint8_t expected[4];
};

struct ZoomCase {
  float fx, fy;
  uint8_t p00, p01, p10, p11;
  uint8_t zoom8, zoom32;  // truncated double sum / float rounded half to even
};

const ZoomCase kBlends[] = {
    {0.0f, 0.0f, 200, 9, 9, 9, 200, 200},        // on a sample: the sample itself
    {0.5f, 0.0f, 100, 0, 50, 50, 50, 50},        // 0.5 x 100
    {0.5f, 0.5f, 10, 20, 30, 40, 25, 25},        // 0.25 x (10 + 20 + 30 + 40)
    {0.5f, 0.0f, 7, 0, 0, 0, 3, 4},              // 3.5: truncated / to even 4
    {0.5f, 0.0f, 5, 0, 0, 0, 2, 2},              // 2.5: truncated / to even 2
    {0.25f, 0.0f, 255, 255, 0, 0, 255, 255},     // 191.25 + 63.75
    {0.75f, 0.75f, 0, 0, 0, 255, 143, 143},      // 0.5625 x 255 = 143.4375
    {0.5f, 0.5f, 255, 255, 255, 255, 255, 255},  // weights sum to exactly 1
};

BlitArgs Args(const Rects& r) {
  return MakeBlitArgs(nullptr, r.dst_x, r.dst_y, r.width, r.height, r.dst_width, r.dst_height,
                      nullptr, r.src_x, r.src_y, r.src_rect_width, r.src_rect_height,
                      r.src_width, r.src_height, r.mode, r.field);
}

TEST(BlendRowC, HandWorkedPixels) {
  const BlendCase cases[] = {
      // As = 128 over Ad = 255: w = OverShare[128][255] = 16447. Channel 0:
      // diff = 200 - 100 + 1 = 101, 2 x 101 x 16447 >> 16 = 50 -> 150.
      // Channel 1: diff = 0 - 100 = -100, -200 x 16447 >> 16 = -51 (floor)
      // -> 49. Channel 2 equal stays 7. Alpha 128 + 255 - (32640 + 255 >> 8)
      // = 383 - 128 = 255.
      {"half over opaque", {200, 0, 7, 128}, {100, 100, 7, 255}, false, {150, 49, 7, 255}},
      // As = 255: w = 32767 gives the source channel; alpha 255.
      {"opaque source", {1, 254, 128, 255}, {200, 3, 0, 17}, false, {1, 254, 128, 255}},
      // As = 0 over Ad = 0: w = 0, alpha 0 + 0 - (255 >> 8) = 0.
      {"clear over clear", {9, 9, 9, 0}, {50, 60, 70, 0}, false, {50, 60, 70, 0}},
      // Any upper alpha over Ad = 0 takes the whole upper colour:
      // OverShare[1][0] = 32767; alpha 1 + 0 - (255 >> 8) = 1.
      {"faint over clear", {30, 40, 50, 1}, {0, 255, 90, 0}, false, {30, 40, 50, 1}},
      // Inverted, As = 0 reads as opaque: w = OverShare[255][Ad] = 32767,
      // alpha (255 - 0) + (0 + 255 >> 8) = 255.
      {"inverted clear source", {11, 22, 33, 0}, {99, 99, 99, 40}, true, {11, 22, 33, 255}},
      // Inverted, As = 255 reads as clear: w = 0, alpha 0 + (255 x 40 + 255
      // >> 8) = 10455 >> 8 = 40: dst unchanged.
      {"inverted opaque source", {11, 22, 33, 255}, {99, 98, 97, 40}, true, {99, 98, 97, 40}},
      // Inverted As = 127 -> upper 128 over Ad = 255: w = 16447 as above;
      // alpha 128 + (127 x 255 + 255 >> 8) = 128 + 127 = 255.
      {"inverted half", {200, 0, 7, 127}, {100, 100, 7, 255}, true, {150, 49, 7, 255}},
  };
  for (const BlendCase& c : cases) {
    SCOPED_TRACE(c.name);
    uint8_t d[4];
    std::memcpy(d, c.d, 4);
    (c.inverted ? BlendOverInvertedRow_C : BlendOverRow_C)(d, c.s, Share(), 1);
    EXPECT_EQ(std::vector<uint8_t>(d, d + 4), std::vector<uint8_t>(c.expected, c.expected + 4));
  }
}

TEST(BilinearRowC, HandWorkedValues) {
  // Vertical, wt = 65535: ((200 + 1) x 65535 >> 16) + 1 + ((50 + 1) x 0 >>
  // 16) = 200 + 1 = 201. wt = 32768: (201 x 32768 >> 16) = 100, + 1, + (51
  // x 32767 >> 16) = 25 -> 126. A flat 255 at wt = 0: 0 + 1 + (256 x 65535
  // >> 16) = 255 + 1 = 256.
  const uint8_t top[3] = {200, 200, 255};
  const uint8_t bottom[3] = {50, 50, 255};
  uint16_t v[3];
  BilinearVertRow_C(v, top, bottom, 65535, 1);
  BilinearVertRow_C(v + 1, top + 1, bottom + 1, 32768, 1);
  BilinearVertRow_C(v + 2, top + 2, bottom + 2, 0, 1);
  EXPECT_EQ(v[0], 201);
  EXPECT_EQ(v[1], 126);
  EXPECT_EQ(v[2], 256);

  // Horizontal: left V = 256 (flat 255), right V = 2. wl = 65535: 256 x
  // 65535 >> 16 = 255 + 0 -> 255. wl = 32768, wr = 32767: 128 + (2 x 32767
  // >> 16 = 0) = 128. A lane of 511 clamps: 510 -> 255 and, half
  // weighted, 511 x 32768 >> 16 = 255.
  const uint16_t vbuf[12] = {256, 256, 511, 0, 2, 2, 2, 2, 0, 0, 0, 0};
  const int32_t cols[2] = {0, 0};
  uint16_t weights[16];
  SpreadBilinearWeights(weights, 65535);
  SpreadBilinearWeights(weights + 8, 32768);
  uint8_t out[8];
  BilinearHorizRow_C(out, vbuf, cols, weights, 2);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 8),
            (std::vector<uint8_t>{255, 255, 255, 0, 128, 128, 255, 0}));
}

TEST(MeanRowC, HandWorkedValues) {
  // One column of five rows 10, 20, 30, 40, 50 with w0 = 0.5, w1 = 0.25:
  // (0.5 x 10 + (20 + 30 + 40)) + 0.25 x 50 = 107.5, x norm 0.5 = 53.75.
  const uint8_t r0[1] = {10}, r1[1] = {20}, r2[1] = {30}, r3[1] = {40}, r4[1] = {50};
  const uint8_t* rows[5] = {r0, r1, r2, r3, r4};
  float acc[1];
  MeanVertRow_C(acc, rows, 5, 0.5f, 0.25f, 0.5f, 0, 1);
  EXPECT_EQ(acc[0], 53.75f);
  // n = 1 and n = 0 read the first row alone: 0.25 x 10 x 4 = 10.
  MeanVertRow_C(acc, rows, 1, 0.25f, 9.0f, 4.0f, 0, 1);
  EXPECT_EQ(acc[0], 10.0f);
  MeanVertRow_C(acc, rows, 0, 0.25f, 9.0f, 4.0f, 0, 1);
  EXPECT_EQ(acc[0], 10.0f);
  // 300 middle rows of 255 saturate at 65535: (0 + 65535) + 0 = 65535.
  std::vector<uint8_t> full(1, 255), none(1, 0);
  std::vector<const uint8_t*> many(302, full.data());
  many[0] = many[301] = none.data();
  MeanVertRow_C(acc, many.data(), 302, 1.0f, 1.0f, 1.0f, 0, 1);
  EXPECT_EQ(acc[0], 65535.0f);
  // 257 x 255 = 65535, then a middle row of 1 reaches 65536: held at 65535.
  std::vector<uint8_t> one(1, 1);
  many[258] = one.data();
  many[259] = none.data();
  MeanVertRow_C(acc, many.data(), 260, 1.0f, 1.0f, 1.0f, 0, 1);
  EXPECT_EQ(acc[0], 65535.0f);

  // Horizontal: pixel 0 folds columns 0..2 with w0 0.5, w1 0.5 and norm
  // 0.5: (0.5 x 100 + 101) + 0.5 x 2 = 152, x 0.5 = 76. Pixel 1 starts at
  // column 2 alone: 1.0 x 2 x 0.5 = 1. Lane 1 holds 1.5 -> 0.75 -> 1; lane 2
  // 2.5 x 0.5... rounding ties to even: 1.25 x 2 x 0.5 = 1.25 -> 1 and
  // lane 3 of pixel 1: 5 x 0.5 = 2.5 -> 2 (even).
  const float a[12] = {100, 0, 600, 1, 101, 0, 0, 0, 2, 3, 2.5f, 5};
  const int32_t counts[2] = {3, 1};
  const float weights[4] = {0.5f, 0.5f, 1.0f, 0.0f};
  uint8_t out[8];
  MeanHorizRow_C(out, a, counts, weights, 0.5f, 2);
  // Pixel 0 lane 2: 0.5 x 600 + 0 + 0.5 x 2.5 = 301.25 x 0.5 = 150.625 -> 151;
  // lane 3: (0.5 + 0) + 2.5 = 3 x 0.5 = 1.5 -> 2; lane 1: 0 + 0 + 1.5 = 0.75 -> 1.
  EXPECT_EQ(std::vector<uint8_t>(out, out + 8), (std::vector<uint8_t>{76, 1, 151, 2, 1, 2, 1, 2}));
}

TEST(ZoomRowsReference, BlendHandWorkedValues) {
  for (const ZoomCase& b : kBlends) {
    SCOPED_TRACE(::testing::Message()
                 << "fx=" << b.fx << " fy=" << b.fy << " p=" << int(b.p00) << "," << int(b.p01)
                 << "," << int(b.p10) << "," << int(b.p11));
    const uint8_t upper8[2] = {b.p00, b.p01}, lower8[2] = {b.p10, b.p11};
    uint8_t out8 = 0;
    Zoom8Row_C(&out8, upper8, lower8, &b.fx, b.fy, 1);
    EXPECT_EQ(out8, b.zoom8);
    // The same sample in all four bytes of a 32-bit pixel.
    uint8_t upper32[8], lower32[8], out32[4] = {};
    std::memset(upper32, b.p00, 4);
    std::memset(upper32 + 4, b.p01, 4);
    std::memset(lower32, b.p10, 4);
    std::memset(lower32 + 4, b.p11, 4);
    Zoom32Row_C(out32, upper32, lower32, &b.fx, b.fy, 1);
    for (uint8_t v : out32) EXPECT_EQ(v, b.zoom32);
  }
}

TEST(StretchPlan, ClippingSteps) {
  struct Case {
    const char* name;
    Rects r;
    bool mean, ok;
    int64_t dst_x, width, src_x, src_rect_width;
    float start_x;
  };
  const Case cases[] = {
      // scaleX 1.5; dstX -2: k = int(0.5 + 3.0) = 3, srcX 4 -> 7, srcRect
      // 15 - 3 = 12, width 10 - 2 = 8; startX = 4 + 2 x 1.5 = 7.0 exactly.
      {"destination overhang", {-2, 0, 10, 4, 40, 8, 4, 0, 15, 4, 40, 8, 1, 0}, false, true, 0, 8, 7, 12, 7.0f},
      // dstX -3: k = int(0.5 + 4.5) = 5 (4 without the half); startX 8.5.
      {"destination overhang with a half", {-3, 0, 10, 4, 40, 8, 4, 0, 15, 4, 40, 8, 1, 0}, false, true, 0, 7, 9, 10, 8.5f},
      // scaleX 0.5; srcX -3: k = ceil(3 / 0.5) = 6, dstX 1 -> 7, width 20 -
      // 6 = 14, srcRect 10 - 3 = 7; startX = -3 + 6 x 0.5 = 0.
      {"source overhang", {1, 0, 20, 4, 40, 8, -3, 0, 10, 4, 40, 8, 1, 0}, false, true, 7, 14, 0, 7, 0.0f},
      // Destination excess 5 of width 10 at scale 2: srcRect 20 - 10 = 10.
      {"destination excess", {35, 0, 10, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, true, 35, 5, 0, 10, 0.0f},
      // Source excess 6 at scale 2: width 10 - ceil(3) = 7.
      {"source excess", {0, 0, 10, 4, 40, 8, 26, 0, 20, 4, 40, 8, 1, 0}, false, true, 0, 7, 26, 14, 26.0f},
      // Excess 7 at scale 2: width 10 - ceil(3.5) = 6.
      {"source excess with a fraction", {0, 0, 10, 4, 40, 8, 27, 0, 20, 4, 40, 8, 1, 0}, false, true, 0, 6, 27, 13, 27.0f},
      // scaleX 31/9 = 3.4444444f; srcX -25: k = ceil(7.26) = 8; startX =
      // -25 + 8 x 3.4444444f = 2.5555553 (not 2.5555556 from the double).
      {"scale on a float edge", {0, 0, 9, 4, 40, 8, -25, 0, 31, 4, 40, 8, 1, 0}, false, true, 8, 1, 0, 6, 2.5555553436279297f},
      {"zero width", {0, 0, 0, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      {"start past the source", {0, 0, 4, 4, 40, 8, 40, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      {"rectangle ends before the buffer", {-4, 0, 4, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      // Mean only: the destination overhang moves the source start past
      // its buffer (k = int(0.5 + 5 x 2) = 10 -> srcX 12 >= 12).
      {"mean fails after overhang", {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, true, false, 0, 0, 0, 0, 0},
      {"bilinear fails at the source excess", {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StretchPlan p;
    ASSERT_EQ(PrepareStretch(Args(c.r), c.mean, &p), c.ok);
    if (!c.ok) continue;
    EXPECT_EQ(p.dst_x, c.dst_x);
    EXPECT_EQ(p.width, c.width);
    EXPECT_EQ(p.src_x, c.src_x);
    EXPECT_EQ(p.src_rect_width, c.src_rect_width);
    EXPECT_EQ(p.start_x, c.start_x);
  }
}

TEST(StretchPlan, FieldStepping) {
  struct Case {
    int32_t field, dst_y;
    bool ok;
    int64_t new_dst_y, first_row, step;
  };
  const Case cases[] = {{0, 3, true, 3, 0, 1}, {1, 3, true, 4, 1, 2}, {1, 4, true, 4, 0, 2},
                        {2, 4, true, 5, 1, 2}, {2, 5, true, 5, 0, 2}, {1, 7, false, 0, 0, 0},
                        {3, 2, false, 0, 0, 0}, {-1, 2, false, 0, 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "field " << c.field << " dstY " << c.dst_y);
    StretchPlan p;
    const Rects r{0, c.dst_y, 4, 1, 8, 8, 0, 0, 2, 2, 8, 8, 1, c.field};
    ASSERT_EQ(PrepareStretch(Args(r), false, &p), c.ok);
    if (!c.ok) continue;
    EXPECT_EQ(p.dst_y, c.new_dst_y);
    EXPECT_EQ(p.first_row, c.first_row);
    EXPECT_EQ(p.row_step, c.step);
  }
}

}  // namespace
}  // namespace qbo::test
