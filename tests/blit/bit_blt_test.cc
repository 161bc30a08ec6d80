// QN_BitBlt: result codes, clipping, field stepping, the hand-over to the
// stretch, and every level giving the same bytes.
#include <gtest/gtest.h>

#include <climits>

#include "blit/blend_row.h"
#include "frame/lookup_tables.h"
#include "tests/blit/blit_test_util.h"

namespace qbo::test {
namespace {

// A 12 x 10 destination and a 9 x 8 source; a 5 x 4 copy from (1, 2) to (3, 4).
constexpr Rects kBase{3, 4, 5, 4, 12, 10, 1, 2, 5, 4, 9, 8, 1, 0};

struct ResultCase {
  const char* name;
  Rects r;
  bool null_src, null_dst;
  int32_t expected;
};

TEST(BitBlt, ResultCodes) {
  auto with = [](auto edit) {
    Rects r = kBase;
    edit(r);
    return r;
  };
  const ResultCase cases[] = {
      {"plain copy", kBase, false, false, 1},
      {"null source first", with([](Rects& r) { r.mode = 9; }), true, true, QBO_E_FAIL},
      {"null source, all else valid", kBase, true, false, QBO_E_FAIL},
      {"null destination", kBase, false, true, 0},
      {"mode 3", with([](Rects& r) { r.mode = 3; }), false, false, QBO_E_FAIL},
      {"mode -1", with([](Rects& r) { r.mode = -1; }), false, false, QBO_E_FAIL},
      {"field 5", with([](Rects& r) { r.field = 5; }), false, false, 0},
      {"width 0", with([](Rects& r) { r.width = r.src_rect_width = 0; }), false, false, 0},
      {"negative height", with([](Rects& r) { r.height = r.src_rect_height = -2; }), false, false, 0},
      {"dst width 0", with([](Rects& r) { r.dst_width = 0; }), false, false, 0},
      {"src height 0", with([](Rects& r) { r.src_height = 0; }), false, false, 0},
      {"dstX at buffer edge", with([](Rects& r) { r.dst_x = 12; }), false, false, 0},
      {"srcY at buffer edge", with([](Rects& r) { r.src_y = 8; }), false, false, 0},
      // dstHeight 0 is not tested up front; dstY -1 clips the height to 3,
      // then dstY + height > 0 cuts it to -0 rows: nothing is left.
      {"dst height 0, dstY negative", with([](Rects& r) { r.dst_height = 0; r.dst_y = -1; }), false, false, 0},
      {"clipped away to the left", with([](Rects& r) { r.dst_x = -5; }), false, false, 0},
      {"even field moves past the buffer", with([](Rects& r) { r.dst_y = 9; r.field = 1; }), false, false, 0},
      {"odd field moves the source past its buffer", with([](Rects& r) { r.src_y = 7; r.dst_y = 2; r.field = 2; }), false, false, 0},
      {"field keeps the start", with([](Rects& r) { r.field = 1; }), false, false, 1},
  };
  ForEachLevel([&](KernelLevel) {
    for (const ResultCase& c : cases) {
      SCOPED_TRACE(c.name);
      Image dst(12, 10, 1), src(9, 8, 2);
      const std::vector<uint8_t> before = dst.Bytes();
      const int32_t result = Call(QN_BitBlt, c.null_dst ? nullptr : dst.data(),
                                  c.null_src ? nullptr : src.data(), c.r);
      EXPECT_EQ(result, c.expected);
      if (result != 1) {
        EXPECT_EQ(dst.Bytes(), before) << "a failing call writes nothing";
      }
      EXPECT_TRUE(dst.GuardsIntact());
    }
  });
}

struct ClipCase {
  const char* name;
  Rects r;
  // The copy that should result: source (sx, sy) to destination (dx, dy),
  // w x h pixels.
  int32_t dx, dy, sx, sy, w, h;
};

TEST(BitBlt, CopiesExactlyTheClippedRectangle) {
  const ClipCase cases[] = {
      {"inside", kBase, 3, 4, 1, 2, 5, 4},
      {"dstX -3 cuts three columns", {-3, 1, 10, 2, 12, 10, 0, 0, 10, 2, 20, 8, 1, 0}, 0, 1, 3, 0, 7, 2},
      {"dstY -2 cuts two rows", {1, -2, 3, 5, 12, 10, 0, 1, 3, 5, 9, 8, 1, 0}, 1, 0, 0, 3, 3, 3},
      {"srcX -2 moves the destination", {1, 1, 5, 2, 12, 10, -2, 0, 5, 2, 9, 8, 1, 0}, 3, 1, 0, 0, 3, 2},
      {"srcY -1 moves the destination", {1, 1, 2, 3, 12, 10, 0, -1, 2, 3, 9, 8, 1, 0}, 1, 2, 0, 0, 2, 2},
      {"source overhangs its right edge", {0, 0, 8, 2, 12, 10, 5, 0, 8, 2, 9, 8, 1, 0}, 0, 0, 5, 0, 4, 2},
      {"destination overhangs its bottom", {0, 8, 4, 5, 12, 10, 0, 0, 4, 5, 9, 8, 1, 0}, 0, 8, 0, 0, 4, 2},
      {"width 5: a group and a tail pixel", {0, 0, 5, 1, 12, 10, 0, 0, 5, 1, 9, 8, 1, 0}, 0, 0, 0, 0, 5, 1},
      {"width 3: two plus one", {2, 2, 3, 1, 12, 10, 1, 1, 3, 1, 9, 8, 1, 0}, 2, 2, 1, 1, 3, 1},
  };
  ForEachLevel([&](KernelLevel) {
    for (const ClipCase& c : cases) {
      SCOPED_TRACE(c.name);
      Image dst(12, 10, 3), src(c.r.src_width, 8, 4);
      Image expected(12, 10, 3);
      for (int32_t y = 0; y < c.h; ++y) {
        std::memcpy(expected.Pixel(c.dx, c.dy + y), src.Pixel(c.sx, c.sy + y), std::size_t(c.w) * 4);
      }
      ASSERT_EQ(Call(QN_BitBlt, dst.data(), src.data(), c.r), 1);
      EXPECT_EQ(MismatchMap(expected.data(), dst.data(), 48, 10, 4), "");
      EXPECT_TRUE(dst.GuardsIntact());
    }
  });
}

TEST(BitBlt, FieldStartMovesByOneAndKeepsTheHeight) {
  // Even field from dstY 3, height 3 (rows 3..5): the start moves to row 4
  // and source row srcY + 1; offsets 0 and 2 are written, so row 6, one
  // below the rectangle, is written too. Rows 3 and 5 stay.
  struct FieldCase {
    int32_t field, dst_y, height;
    std::vector<int32_t> written;
  };
  const FieldCase cases[] = {
      {1, 3, 3, {4, 6}}, {1, 3, 4, {4, 6}}, {1, 4, 4, {4, 6}},
      {2, 4, 3, {5, 7}}, {2, 3, 4, {3, 5}}, {0, 3, 3, {3, 4, 5}},
  };
  ForEachLevel([&](KernelLevel) {
    for (const FieldCase& c : cases) {
      SCOPED_TRACE(::testing::Message() << "field " << c.field << " dstY " << c.dst_y << " height " << c.height);
      Image dst(6, 10, 5), src(6, 10, 6), expected(6, 10, 5);
      // Source row of destination row `row` is srcY (2) + (row - dstY).
      for (int32_t row : c.written) std::memcpy(expected.Pixel(1, row), src.Pixel(0, 2 + row - c.dst_y), 16);
      const Rects r{1, c.dst_y, 4, c.height, 6, 10, 0, 2, 4, c.height, 6, 10, 1, c.field};
      ASSERT_EQ(Call(QN_BitBlt, dst.data(), src.data(), r), 1);
      EXPECT_EQ(MismatchMap(expected.data(), dst.data(), 24, 10, 4), "");
    }
  });
}

TEST(BitBlt, BlendModesRunTheRowsAtEveryLevel) {
  // Mode 0 and 2 through the export equal the reference rows applied to
  // the clipped rectangle, row by row, at every level and field.
  for (int32_t mode : {0, 2}) {
    for (int32_t field : {0, 1, 2}) {
      // The field quirk reads one source row and writes one destination row
      // past the rectangles; both images keep a spare row for it.
      Image src(37, 9, 7, 1);
      Image expected(41, 12, 8, 1);
      const Rects r{-2, 1, 39, 9, 41, 12, 0, 0, 39, 9, 37, 9, mode, field};
      // Clipped: dstX -2 moves the source start to column 2 and leaves 35
      // columns; destination row y takes source row y - 1. The even field
      // moves the start to row 2, the odd one keeps row 1.
      const int32_t first = field == 1 ? 2 : 1;
      const int32_t step = field == 0 ? 1 : 2;
      for (int32_t off = 0; off < 9; off += step) {
        (mode == 0 ? BlendOverRow_C : BlendOverInvertedRow_C)(
            expected.Pixel(0, first + off), src.Pixel(2, first + off - 1), g_tables.over_share, 35);
      }
      ForEachLevel([&](KernelLevel) {
        SCOPED_TRACE(::testing::Message() << "mode " << mode << " field " << field);
        Image dst(41, 12, 8, 1);
        ASSERT_EQ(Call(QN_BitBlt, dst.data(), src.data(), r), 1);
        EXPECT_EQ(MismatchMap(expected.data(), dst.data(), 41 * 4, 13, 4), "");
      });
    }
  }
}

TEST(BitBlt, DifferingSizesAreTheStretch) {
  for (int32_t mode : {0, 1, 2}) {
    for (const Rects& r : {Rects{0, 0, 7, 5, 12, 10, 1, 1, 5, 4, 9, 8, mode, 0},
                           Rects{2, 1, 5, 4, 12, 10, 0, 0, 1, 4, 9, 8, mode, 2},
                           Rects{0, 0, 3, 3, 12, 10, 0, 0, 3, 1, 9, 8, mode, 0}}) {
      SCOPED_TRACE(::testing::Message() << "mode " << mode << " srcRect " << r.src_rect_width << "x" << r.src_rect_height);
      Image a(12, 10, 9), b(12, 10, 9), src(9, 8, 10);
      EXPECT_EQ(Call(QN_BitBlt, a.data(), src.data(), r), Call(QN_StretchBlt, b.data(), src.data(), r));
      EXPECT_EQ(a.Bytes(), b.Bytes());
    }
  }
  Rects bad = kBase;
  bad.width = 7;
  EXPECT_EQ(Call(QN_BitBlt, nullptr, nullptr, bad), QBO_E_FAIL) << "null source before the stretch";
  EXPECT_EQ(Call(QN_BitBlt, nullptr, Image(9, 8, 1).data(), bad), 0) << "the stretch's own result";
}

}  // namespace
}  // namespace qbo::test
