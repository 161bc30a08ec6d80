// The layout rows and the 4:2:0 to YUYV rows worked by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/test_support.h"
#include "yuvlayout/yuvlayout_row.h"

namespace qbo::test {
namespace {

// One YUYV pair per row with the given U and V, width 2.
std::vector<uint8_t> Pair(uint8_t u, uint8_t v) { return {0, u, 0, v}; }

using FrameFn = void(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, const void*, int32_t,
                                  const void*, int32_t, int32_t, int32_t);
using SplitFn = void(QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t,
                                  const void*, int32_t, const void*, int32_t, int32_t, int32_t);

struct Export420 {
  const char* name;
  FrameFn frame;
  SplitFn split;
  bool xdcam;
};

const Export420 kExports[] = {
    {"plain", QN_CS_420_422_YUVFrame, QN_CS_420_422_YUVSplit, false},
    {"XDCAM", QN_CS_420_422_YUVFrame_XDCAM, QN_CS_420_422_YUVSplit_XDCAM, true},
};

TEST(LayoutRowsReference, HandWorkedValues) {
  {  // Width 5: two pairs; the fifth pixel's bytes stay as they were.
    const uint8_t y[] = {1, 2, 3, 4, 5}, u[] = {10, 20}, v[] = {30, 40};
    uint8_t out[10];
    std::memset(out, 0xEE, sizeof out);
    InterleaveYuyvRow_C(out, y, u, v, 5);
    const uint8_t want[] = {1, 10, 2, 30, 3, 20, 4, 40, 0xEE, 0xEE};
    EXPECT_EQ(std::memcmp(out, want, sizeof want), 0);
  }
  {
    const uint8_t a[] = {10, 0, 255, 7}, b[] = {20, 255, 255, 9};
    uint8_t out[4];
    const ChromaBlend quarter = {2, 6};  // (P + 3C + 2) >> 2 in eighths
    BlendChromaRow_C(out, a, b, 4, &quarter);
    // (10 + 60 + 2) >> 2 = 18; (0 + 765 + 2) >> 2 = 191; 255; (7 + 27 + 2) >> 2 = 9
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{18, 191, 255, 9}));
    const ChromaBlend xdcam = {1, 7};  // (P + 7C + 4) >> 3
    BlendChromaRow_C(out, a, b, 4, &xdcam);
    // (10 + 140 + 4) >> 3 = 19; (1785 + 4) >> 3 = 223; 255; (7 + 63 + 4) >> 3 = 9
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{19, 223, 255, 9}));
  }
  {  // Mixed row, weights (2, 6) then (6, 2):
     // U (2 x 10 + 6 x 20 + 4) >> 3 = 144 >> 3 = 18, V (2 x 100 + 6 x 200 + 4) >> 3 = 175;
     // U (6 x 10 + 2 x 20 + 4) >> 3 = 104 >> 3 = 13, V (6 x 100 + 2 x 200 + 4) >> 3 = 125.
    const uint8_t y[] = {1, 2}, ua[] = {10}, ub[] = {20}, va[] = {100}, vb[] = {200};
    uint8_t out[4];
    const ChromaBlend w[2] = {{2, 6}, {6, 2}};
    Yuv420ToYuyvRow_C(out, y, ua, ub, va, vb, 2, &w[0]);
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{1, 18, 2, 175}));
    Yuv420ToYuyvRow_C(out, y, ua, ub, va, vb, 2, &w[1]);
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{1, 13, 2, 125}));
  }
  {  // Luma: bytes 0 and 2 of each pair; width 3 writes two.
    const uint8_t src[] = {16, 128, 235, 128, 99, 1, 98, 2};
    uint8_t y[3] = {0xEE, 0xEE, 0xEE};
    YuyvToLumaRow_C(y, src, 3);
    EXPECT_EQ(std::vector<uint8_t>(y, y + 3), (std::vector<uint8_t>{16, 235, 0xEE}));
  }
}

TEST(LayoutRowsReference, ChromaTapsSaturateAndShift) {
  struct Case {
    const char* what;
    ChromaTaps taps;
    uint8_t a, b, c, d;
    int width;
    uint8_t want;
  };
  const ChromaTaps four = {-1, 3, 3, -1, 2, 2, 2};
  const ChromaTaps xdcam = {0, 3, 1, 0, 2, 2, 1};
  const Case cases[] = {
      // (-0 + 300 + 300 - 0 + 2) >> 2 = 150
      {"4-tap smooth", four, 0, 100, 100, 0, 2, 150},
      // -200 + 0 + 0 - 200 + 2 = -398 wraps to 65138; >> 2 = 16284 -> 255
      {"4-tap negative saturates high", four, 200, 0, 0, 200, 4, 255},
      // 765 + 765 + 2 = 1532 >> 2 = 383 -> 255
      {"4-tap overshoot", four, 0, 255, 255, 0, 4, 255},
      // (3 x 10 - 200 + 1) = -169 wraps to 65367; >> 1 = 32683 -> 255
      {"odd end negative", {-1, 3, 0, 0, 1, 1, 1}, 200, 10, 10, 10, 4, 255},
      // (3 x 100 + 60 + 2) >> 2 = 90 in a pair that is not trailing (width 4)
      {"xdcam plain pair", xdcam, 0, 100, 60, 0, 4, 90},
      // trailing pair of width 2: (300 + 60 + 2) >> 1 = 181
      {"xdcam trailing pair", xdcam, 0, 100, 60, 0, 2, 181},
      // trailing pair: (600 + 200 + 2) >> 1 = 401 -> 255
      {"xdcam trailing pair saturates", xdcam, 0, 200, 200, 0, 2, 255},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<uint8_t> rows[4];
    const uint8_t vals[4] = {c.a, c.b, c.c, c.d};
    for (int i = 0; i < 4; ++i) {
      for (int p = 0; p < c.width / 2; ++p) {
        const std::vector<uint8_t> pair = Pair(vals[i], vals[i]);
        rows[i].insert(rows[i].end(), pair.begin(), pair.end());
      }
    }
    uint8_t u[2] = {}, v[2] = {};
    YuyvToChromaRow_C(u, v, rows[0].data(), rows[1].data(), rows[2].data(), rows[3].data(),
                      c.width, &c.taps);
    EXPECT_EQ(u[0], c.want);
    EXPECT_EQ(v[0], c.want);
  }
}

TEST(Yuv420ToYuyv, HandWorkedFirstRows) {
  // One pair a row, height 12 (h2 = 6, q = 3). Top field chroma rows are
  // plane rows 0, 2, 4 = 0, 100, 200; field row 1 (frame row 2):
  // plain (3 x 0 + 100 + 2) >> 2 = 25; XDCAM top (5 x 0 + 3 x 100 + 4) >> 3 = 38.
  // Field row 2 (frame row 4): plain (0 + 300 + 2) >> 2 = 75; XDCAM
  // (0 + 700 + 4) >> 3 = 88. Last pair: row 5 (frame row 10) keeps 200.
  const uint8_t plane_u[6] = {0, 9, 100, 9, 200, 9};
  uint8_t y[24] = {}, out[48] = {};
  for (const Export420& e : kExports) {
    SCOPED_TRACE(e.name);
    e.frame(out, 4, y, 2, plane_u, 1, plane_u, 1, 2, 12);
    EXPECT_EQ(out[0 * 4 + 1], 0);
    EXPECT_EQ(out[2 * 4 + 1], !e.xdcam ? 25 : 38);
    EXPECT_EQ(out[4 * 4 + 1], !e.xdcam ? 75 : 88);
    EXPECT_EQ(out[10 * 4 + 1], 200);
  }
}

TEST(Yuv420ToYuyv, Height576BlackensTheLastLineOverTheWholePitch) {
  // Pitch 21 rounds down to 20 bytes: five black groups; byte 20 of the
  // padding keeps its value.
  constexpr int32_t kPitch = 21;
  const std::vector<uint8_t> y = RandomBytes(6 * 576, 1), u = RandomBytes(3 * 288, 2),
                             v = RandomBytes(3 * 288, 3);
  for (const Export420& e : kExports) {
    SCOPED_TRACE(e.name);
    std::vector<uint8_t> frame = RandomBytes(kPitch * 576, 4);
    std::vector<uint8_t> top = RandomBytes(kPitch * 288, 5), bottom = RandomBytes(kPitch * 288, 6);
    const uint8_t frame_padding = frame[kPitch * 575 + 20], bottom_padding = bottom[kPitch * 287 + 20];
    e.frame(frame.data(), kPitch, y.data(), 6, u.data(), 3, v.data(), 3, 6, 576);
    e.split(top.data(), kPitch, bottom.data(), kPitch, y.data(), 6, u.data(), 3, v.data(), 3, 6, 576);
    const uint8_t black[4] = {16, 128, 16, 128};
    for (const uint8_t* last : {&frame[kPitch * 575], &bottom[kPitch * 287]}) {
      for (int i = 0; i < 20; ++i) ASSERT_EQ(last[i], black[i % 4]) << "byte " << i;
    }
    EXPECT_EQ(frame[kPitch * 575 + 20], frame_padding);
    EXPECT_EQ(bottom[kPitch * 287 + 20], bottom_padding);
  }
}

}  // namespace
}  // namespace qbo::test
