// Field/frame moves and 4:2:0 -> YUYV exports against a model written from
// the row scheme (first pair, middle pairs, last pair or single last row of
// each field), at every level, with padded, guarded and upward planes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "frame/accel.h"
#include "tests/support/fake_vela_vid.h"
#include "tests/yuvlayout/test_planes.h"

namespace qbo::test {
namespace {

// ---- field and frame moves ----------------------------------------------

TEST(FieldFrameMoves, ComposeAndSplitMoveWholeRowPairs) {
  struct Case {
    int width, height, bpp;
  };
  const Case cases[] = {{5, 6, 4}, {5, 5, 4}, {17, 4, 3}, {3, 1, 4}, {9, 2, 1}, {4, 4, 0}, {0, 4, 4}};
  ForEachLevel([&](KernelLevel) {
    for (const Case& c : cases) {
      for (bool upward : {false, true}) {
        SCOPED_TRACE(::testing::Message() << c.width << "x" << c.height << " bpp=" << c.bpp
                                          << (upward ? " upward" : ""));
        const int n = c.width * c.bpp;
        const int field_rows = c.height / 2;
        TestPlane top(n, field_rows, 1, upward), bottom(n, field_rows, 2, !upward, 3);
        TestPlane frame(n, c.height, 3, upward, 1);
        Rows want = frame.Snapshot();
        const Rows t = top.Snapshot(), b = bottom.Snapshot();
        for (int i = 0; i < field_rows; ++i) {
          std::copy_n(t[i].begin(), n, want[2 * i].begin());
          std::copy_n(b[i].begin(), n, want[2 * i + 1].begin());
        }
        QN_CS_ComposeFields(frame.First(), frame.Pitch(), top.First(), top.Pitch(),
                            bottom.First(), bottom.Pitch(), c.width, c.height, c.bpp);
        ASSERT_EQ(Differences(want, frame), "");
        ASSERT_TRUE(frame.GuardsIntact());

        // And back: fresh fields get exactly the frame's row pairs.
        TestPlane top2(n, field_rows, 4, upward), bottom2(n, field_rows, 5, upward);
        Rows want_top = top2.Snapshot(), want_bottom = bottom2.Snapshot();
        const Rows f = frame.Snapshot();
        for (int i = 0; i < field_rows; ++i) {
          std::copy_n(f[2 * i].begin(), n, want_top[i].begin());
          std::copy_n(f[2 * i + 1].begin(), n, want_bottom[i].begin());
        }
        QN_CS_SplitFrame(top2.First(), top2.Pitch(), bottom2.First(), bottom2.Pitch(),
                         frame.First(), frame.Pitch(), c.width, c.height, c.bpp);
        ASSERT_EQ(Differences(want_top, top2), "");
        ASSERT_EQ(Differences(want_bottom, bottom2), "");
        ASSERT_TRUE(top2.GuardsIntact() && bottom2.GuardsIntact());
      }
    }
  });
}

std::vector<uint8_t> PackRow(const uint8_t* y, const uint8_t* u, const uint8_t* v, int width) {
  std::vector<uint8_t> out;
  for (int j = 0; j < width / 2; ++j) {
    out.insert(out.end(), {y[2 * j], u[j], y[2 * j + 1], v[j]});
  }
  return out;
}

void Put(Rows& rows, int r, const std::vector<uint8_t>& bytes) {
  std::copy(bytes.begin(), bytes.end(), rows[r].begin());
}

TEST(Compose422, FrameAndSplitPackEveryRow) {
  ForEachLevel([](KernelLevel) {
    for (int width : {1, 7, 16, 33, 79}) {
      for (int height : {0, 1, 2, 5, 6}) {
        SCOPED_TRACE(::testing::Message() << width << "x" << height);
        const int half = width / 2;
        TestPlane y(width, height, 10), u(half, height, 11, true), v(half, height, 12, false, 2);
        TestPlane frame(2 * width, height, 13, true, 1);
        Rows want = frame.Snapshot();
        for (int r = 0; r < height; ++r) Put(want, r, PackRow(y.Row(r), u.Row(r), v.Row(r), width));
        QN_CS_ComposeYUV422_Frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(),
                                  u.Pitch(), v.First(), v.Pitch(), width, height);
        ASSERT_EQ(Differences(want, frame), "");
        ASSERT_TRUE(frame.GuardsIntact());

        // Odd heights give both fields height / 2 + 1 rows, the bottom's
        // last a whole-row copy of the top's (its unwritten pixel too).
        const int field_rows = (height + 1) / 2;
        TestPlane top(2 * width, field_rows, 14), bottom(2 * width, field_rows, 15, true);
        Rows want_top = top.Snapshot(), want_bottom = bottom.Snapshot();
        for (int r = 0; r < height; ++r) {
          Put(r % 2 ? want_bottom : want_top, r / 2, PackRow(y.Row(r), u.Row(r), v.Row(r), width));
        }
        if (height % 2) {
          std::copy_n(want_top[height / 2].begin(), 2 * width, want_bottom[height / 2].begin());
        }
        QN_CS_ComposeYUV422_Split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(),
                                  y.First(), y.Pitch(), u.First(), u.Pitch(), v.First(), v.Pitch(),
                                  width, height);
        ASSERT_EQ(Differences(want_top, top), "");
        ASSERT_EQ(Differences(want_bottom, bottom), "");
        ASSERT_TRUE(top.GuardsIntact() && bottom.GuardsIntact());
      }
    }
  });
}

// ---- 4:2:0 -> YUYV -----------------------------------------------------

enum class Filter { kPlain, kXdcam };

// Chroma byte i of field row r of field f, straight from the row table:
// quarters for the plain filter, eighths per field for XDCAM; the last
// pair or single last row overrides the first pair where a short field
// makes them meet (they are written later). Field chroma row k is plane
// row 2k + f, clamped to the field's own rows.
uint8_t ModelChroma(TestPlane& plane, int i, int h2, int f, int r, Filter filter) {
  const int q = (h2 + 1) / 2;
  const int own = (h2 + 1 - f) / 2;
  auto C = [&](int k) -> int {
    const int row = own ? 2 * std::clamp(k, 0, own - 1) + f : 0;
    return plane.Row(row)[i];
  };
  auto even = [&](int p, int c) {  // row 2k from P, C
    if (filter == Filter::kPlain) return (p + 3 * c + 2) >> 2;
    return f == 0 ? (p + 7 * c + 4) >> 3 : (3 * p + 5 * c + 4) >> 3;
  };
  auto odd = [&](int c, int n) {  // row 2k + 1 from C, N; row 1 uses the same weights
    if (filter == Filter::kPlain) return (3 * c + n + 2) >> 2;
    return f == 0 ? (5 * c + 3 * n + 4) >> 3 : (7 * c + n + 4) >> 3;
  };
  if (r == 2 * q - 2) return static_cast<uint8_t>(even(C(q - 2), C(q - 1)));
  if (h2 % 2 == 0 && r == 2 * q - 1) return static_cast<uint8_t>(C(q - 1));
  if (r == 0) return static_cast<uint8_t>(C(0));
  if (r == 1) return static_cast<uint8_t>(odd(C(0), C(1)));
  const int k = r / 2;
  return static_cast<uint8_t>(r % 2 ? odd(C(k), C(k + 1)) : even(C(k - 1), C(k)));
}

std::vector<uint8_t> ModelYuyvRow(TestPlane& y, TestPlane& u, TestPlane& v, int width, int h2,
                                  int f, int r, Filter filter) {
  std::vector<uint8_t> cu(width / 2), cv(width / 2);
  for (int i = 0; i < width / 2; ++i) {
    cu[i] = ModelChroma(u, i, h2, f, r, filter);
    cv[i] = ModelChroma(v, i, h2, f, r, filter);
  }
  return PackRow(y.Row(2 * r + f), cu.data(), cv.data(), width);
}

void Blacken(std::vector<uint8_t>& row) {
  for (std::size_t i = 0; i + 4 <= row.size(); i += 4) {
    std::copy_n(std::begin({16, 128, 16, 128}), 4, row.begin() + i);
  }
}

using FrameFn = void(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, const void*, int32_t,
                                  const void*, int32_t, int32_t, int32_t);
using SplitFn = void(QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t,
                                  const void*, int32_t, const void*, int32_t, int32_t, int32_t);

struct Export420 {
  const char* name;
  FrameFn frame;
  SplitFn split;
  Filter filter;
};

const Export420 kExports[] = {
    {"plain", QN_CS_420_422_YUVFrame, QN_CS_420_422_YUVSplit, Filter::kPlain},
    {"XDCAM", QN_CS_420_422_YUVFrame_XDCAM, QN_CS_420_422_YUVSplit_XDCAM, Filter::kXdcam},
};

// Heights: multiples of 4, 4k + 2 and 4k + 3 (odd rows a field), odd,
// short pictures below 6 rows, and 576.
const int kHeights[] = {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 14, 576};

TEST(Yuv420ToYuyv, FrameAndSplitMatchTheRowScheme) {
  ForEachLevel([](KernelLevel) {
    for (const Export420& e : kExports) {
      for (int height : kHeights) {
        for (int width : {1, 2, 10, 33, 79}) {
          if (height == 576 && width > 10) continue;
          const bool upward = (width + height) % 2 != 0;
          SCOPED_TRACE(::testing::Message() << e.name << " " << width << "x" << height
                                            << (upward ? " upward" : ""));
          const int h2 = height / 2;
          TestPlane y(width, height, 21, upward), u(width / 2, h2, 22, !upward, 1),
              v(width / 2, h2, 23, false, 2);
          TestPlane frame(2 * width, height, 24, upward, 3);
          TestPlane top(2 * width, h2, 25, !upward), bottom(2 * width, h2, 26, upward, 1);
          Rows want_frame = frame.Snapshot(), want_top = top.Snapshot(),
               want_bottom = bottom.Snapshot();
          for (int f = 0; f < 2; ++f) {
            for (int r = 0; r < h2; ++r) {
              const std::vector<uint8_t> row = ModelYuyvRow(y, u, v, width, h2, f, r, e.filter);
              Put(want_frame, 2 * r + f, row);
              Put(f ? want_bottom : want_top, r, row);
            }
          }
          if (height == 576) {
            Blacken(want_frame[575]);
            Blacken(want_bottom[287]);
          }
          e.frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(), u.Pitch(),
                  v.First(), v.Pitch(), width, height);
          e.split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(), y.Pitch(),
                  u.First(), u.Pitch(), v.First(), v.Pitch(), width, height);
          ASSERT_EQ(Differences(want_frame, frame), "");
          ASSERT_EQ(Differences(want_top, top), "");
          ASSERT_EQ(Differences(want_bottom, bottom), "");
          ASSERT_TRUE(frame.GuardsIntact() && top.GuardsIntact() && bottom.GuardsIntact());
        }
      }
    }
  });
}

TEST(Yuv420ToYuyv, Height576BlackensTheLastLineOverTheWholePitch) {
  for (const Export420& e : kExports) {
    SCOPED_TRACE(e.name);
    TestPlane y(6, 576, 1), u(3, 288, 2), v(3, 288, 3);
    TestPlane frame(12, 576, 4, false, 0, 9), bottom(12, 288, 5, false, 0, 9), top(12, 288, 6);
    const uint8_t frame_padding = frame.Row(575)[20], bottom_padding = bottom.Row(287)[20];
    e.frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(), u.Pitch(), v.First(),
            v.Pitch(), 6, 576);
    e.split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(), y.Pitch(),
            u.First(), u.Pitch(), v.First(), v.Pitch(), 6, 576);
    // Pitch 21 rounds down to 20 bytes: five black groups; byte 20 of the
    // padding keeps its value.
    const uint8_t black[4] = {16, 128, 16, 128};
    for (TestPlane* p : {&frame, &bottom}) {
      const uint8_t* last = p->Row(p->rows() - 1);
      for (int i = 0; i < 20; ++i) ASSERT_EQ(last[i], black[i % 4]) << "byte " << i;
    }
    EXPECT_EQ(frame.Row(575)[20], frame_padding);
    EXPECT_EQ(bottom.Row(287)[20], bottom_padding);
  }
}

// Chroma planes of exactly height / 2 rows, packed, ending at an
// inaccessible page: any read of a row past the plane faults.
TEST(Yuv420ToYuyv, NeverReadsPastTheChromaPlane) {
  for (int height : {2, 3, 6, 7, 10, 11, 12}) {
    for (const Export420& e : kExports) {
      SCOPED_TRACE(::testing::Message() << e.name << " height=" << height);
      const int width = 34, h2 = height / 2;
      PageEndBuffer u(static_cast<std::size_t>(17 * h2)), v(static_cast<std::size_t>(17 * h2));
      FillRandom(u.data(), u.size(), 1);
      FillRandom(v.data(), v.size(), 2);
      TestPlane y(width, height, 3), frame(2 * width, height, 4), top(2 * width, h2, 5),
          bottom(2 * width, h2, 6);
      e.frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.data(), 17, v.data(), 17,
              width, height);
      e.split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(), y.Pitch(),
              u.data(), 17, v.data(), 17, width, height);
      EXPECT_TRUE(frame.GuardsIntact() && top.GuardsIntact() && bottom.GuardsIntact());
    }
  }
}

TEST(Yuv420ToYuyv, EachFieldKeepsItsOwnChroma) {
  // Top-field chroma rows (plane rows 0, 2, ...) hold 40/60, the bottom's
  // 200/220: every mix inside a field keeps those values, so any leak of
  // one field's chroma into the other's rows shows.
  ForEachLevel([](KernelLevel) {
    for (const Export420& e : kExports) {
      for (int height : {8, 10, 11, 16}) {
        SCOPED_TRACE(::testing::Message() << e.name << " height=" << height);
        const int width = 40, h2 = height / 2;
        TestPlane y(width, height, 1), u(width / 2, h2, 2), v(width / 2, h2, 3);
        for (int r = 0; r < h2; ++r) {
          std::memset(u.Row(r), r % 2 ? 200 : 40, width / 2);
          std::memset(v.Row(r), r % 2 ? 220 : 60, width / 2);
        }
        TestPlane frame(2 * width, height, 4), top(2 * width, h2, 5), bottom(2 * width, h2, 6);
        e.frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(), u.Pitch(),
                v.First(), v.Pitch(), width, height);
        e.split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(), y.Pitch(),
                u.First(), u.Pitch(), v.First(), v.Pitch(), width, height);
        for (int r = 0; r < 2 * h2; ++r) {
          const uint8_t* rows[2] = {frame.Row(r), (r % 2 ? bottom : top).Row(r / 2)};
          for (const uint8_t* row : rows) {
            for (int j = 0; j < width / 2; ++j) {
              ASSERT_EQ(row[4 * j + 1], r % 2 ? 200 : 40) << "row " << r << " pair " << j;
              ASSERT_EQ(row[4 * j + 3], r % 2 ? 220 : 60) << "row " << r << " pair " << j;
            }
          }
        }
      }
    }
  });
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
    EXPECT_EQ(out[2 * 4 + 1], e.filter == Filter::kPlain ? 25 : 38);
    EXPECT_EQ(out[4 * 4 + 1], e.filter == Filter::kPlain ? 75 : 88);
    EXPECT_EQ(out[10 * 4 + 1], 200);
  }
}

TEST(Yuv420ToYuyv, SplitHandsTheCallToVelaVidWhenTheEntryIsThere) {
  uint8_t y[64] = {}, u[16] = {}, v[16] = {}, top[64] = {}, bottom[64] = {};
  auto call = [&] {
    QN_CS_420_422_YUVSplit(top, 16, bottom, -16, y, 8, u, 4, v, -4, 8, 6);
  };
  {
    FakeVelaVid fake;
    call();
    ASSERT_EQ(fake.call_count(), 1);
    const FakeVelaCall& c = fake.last_call();
    EXPECT_EQ(c.array, kFakeConvertArray);
    EXPECT_EQ(c.index, kConvert420To422SplitEntry);
    ASSERT_EQ(c.argc, 14);
    const intptr_t want[14] = {reinterpret_cast<intptr_t>(top), 16, reinterpret_cast<intptr_t>(bottom),
                               -16, reinterpret_cast<intptr_t>(y), 8, reinterpret_cast<intptr_t>(u),
                               4, reinterpret_cast<intptr_t>(v), -4, 8, 6, 0, 0};
    for (int i = 0; i < 14; ++i) EXPECT_EQ(c.args[i], want[i]) << "argument " << i;
  }
  // Each missing link runs the library's own conversion instead: with Y
  // 0x77 the own path writes it to the fields.
  std::memset(y, 0x77, sizeof y);
  struct Missing {
    const char* what;
    void (*apply)(FakeVelaVid&);
  };
  const Missing cases[] = {
      {"module", [](FakeVelaVid& f) { f.RemoveTable(); }},
      {"convert array", [](FakeVelaVid& f) { f.SetArrayNull(kFakeConvertArray, true); }},
      {"entry 73", [](FakeVelaVid& f) { f.SetEntryPresent(kFakeConvertArray, 73, false); }},
  };
  for (const Missing& m : cases) {
    SCOPED_TRACE(m.what);
    FakeVelaVid fake;
    m.apply(fake);
    std::memset(top, 0, sizeof top);
    QN_CS_420_422_YUVSplit(top, 16, bottom, 16, y, 8, u, 4, v, 4, 8, 6);
    EXPECT_EQ(fake.call_count(), 0);
    EXPECT_EQ(top[0], 0x77);
  }
}

}  // namespace
}  // namespace qbo::test
