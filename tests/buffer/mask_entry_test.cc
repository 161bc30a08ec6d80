// The mask exports: placement and clipping against a pixel-by-pixel model,
// the result codes hosts test, and extreme arguments with buffers sized
// exactly as the arguments describe.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

enum class Op { kFill, kMix, kSub };

// One call of a mask export in the library's terms. For the fill the
// rectangle is the rest of the mask and width/height are not used.
struct Call {
  int32_t x, y, width, height, dst_width, dst_height, src_x, src_y, src_width, src_height;
};

const char* Name(Op op) { return op == Op::kFill ? "Fill" : op == Op::kMix ? "Mix" : "Sub"; }

int32_t CallExport(Op op, uint8_t* dst, const uint8_t* src, const Call& c) {
  switch (op) {
    case Op::kFill:
      return QN_FillMaskColor(dst, c.x, c.y, c.dst_width, c.dst_height, src, c.src_x, c.src_y,
                              c.src_width, c.src_height);
    case Op::kMix:
      return QN_MixMask(dst, c.x, c.y, c.width, c.height, c.dst_width, c.dst_height, src, c.src_x,
                        c.src_y, 0x7777, -1, c.src_width, c.src_height);
    case Op::kSub:
      return QN_SubMask(dst, c.x, c.y, c.dst_width, c.dst_height, src, c.src_x, c.src_y,
                        c.src_width, c.src_height, c.width, c.height, INT32_MIN);
  }
  return 0;
}

int32_t Rejected(Op op) { return op == Op::kSub ? QBO_E_FAIL : 1; }
int32_t Done(Op op) { return op == Op::kFill ? 1 : op == Op::kMix ? QBO_E_FAIL : 0; }

// Offsets k along one axis that the placement covers: inside the
// rectangle, and landing inside both planes. Walks the smaller plane, so
// huge planes cost nothing.
std::vector<int64_t> Covered(int64_t pos, int64_t size, int64_t dst_limit, int64_t src_pos,
                             int64_t src_limit) {
  std::vector<int64_t> ks;
  const bool walk_dst = dst_limit <= src_limit;
  const int64_t limit = walk_dst ? dst_limit : src_limit;
  for (int64_t i = 0; i < limit; ++i) {
    const int64_t k = i - (walk_dst ? pos : src_pos);
    if (k >= 0 && k < size && pos + k >= 0 && pos + k < dst_limit && src_pos + k >= 0 &&
        src_pos + k < src_limit) {
      ks.push_back(k);
    }
  }
  return ks;
}

struct Model {
  bool rejected;
  std::vector<int64_t> cols, rows;
};

Model Place(Op op, const Call& c) {
  const int64_t w = op == Op::kFill ? c.src_width : c.width;
  const int64_t h = op == Op::kFill ? c.src_height : c.height;
  Model m{true, {}, {}};
  if (c.x >= c.dst_width || c.y >= c.dst_height || c.dst_width < 1 || c.dst_height < 1 ||
      c.src_width < 1 || c.src_height < 1 || c.src_x >= c.src_width || c.src_y >= c.src_height) {
    return m;
  }
  m.cols = Covered(c.x, w, c.dst_width, c.src_x, c.src_width);
  m.rows = Covered(c.y, h, c.dst_height, c.src_y, c.src_height);
  m.rejected = m.cols.empty() || m.rows.empty();
  return m;
}

uint8_t MixValue(int d, int s) { return static_cast<uint8_t>(d + s - ((d * s + 255) >> 8)); }

// Applies the model to copies of the planes (small planes only).
std::vector<uint8_t> Expected(Op op, const std::vector<uint8_t>& dst,
                              const std::vector<uint8_t>& src, const Call& c, const Model& m) {
  std::vector<uint8_t> out = dst;
  if (m.rejected) return out;
  const std::size_t unit = op == Op::kFill ? 4 : 1;
  for (int64_t kr : m.rows) {
    for (int64_t kc : m.cols) {
      const std::size_t di = static_cast<std::size_t>((c.y + kr) * c.dst_width + c.x + kc);
      const uint8_t s = src[static_cast<std::size_t>((c.src_y + kr) * c.src_width + c.src_x + kc)];
      if (op == Op::kFill) {
        uint8_t& a = out[di * unit + 3];
        a = static_cast<uint8_t>(std::lrint(a * (s * 0.003921569f)));
      } else if (op == Op::kMix) {
        out[di] = MixValue(out[di], s);
      } else {
        out[di] = out[di] > s ? out[di] - s : 0;
      }
    }
  }
  return out;
}

std::size_t PlaneBytes(int32_t width, int32_t height, std::size_t unit) {
  if (width < 1 || height < 1) return 0;
  return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * unit;
}

const Op kOps[] = {Op::kFill, Op::kMix, Op::kSub};

// x, y, width, height, dstWidth, dstHeight, srcX, srcY, srcWidth, srcHeight
const Call kPlacements[] = {
    {0, 0, 5, 4, 8, 6, 0, 0, 5, 4},      // inside
    {3, 2, 5, 4, 8, 6, 0, 0, 5, 4},      // flush with the far corner
    {5, 4, 5, 4, 8, 6, 0, 0, 5, 4},      // trimmed on the right and bottom
    {-2, -1, 5, 4, 8, 6, 0, 0, 5, 4},    // negative corner trims the source's start
    {-3, 1, 14, 3, 8, 6, 0, 0, 14, 4},   // wider than the destination: clipped on both sides
    {2, 1, 5, 4, 8, 6, -2, -1, 5, 4},    // negative source corner moves the placement
    {-1, -1, 9, 7, 8, 6, -1, -1, 9, 7},  // both corners negative
    {1, 1, 3, 2, 8, 6, 2, 1, 5, 4},      // interior source rectangle
    {0, 0, 8, 6, 8, 6, 0, 0, 8, 6},      // whole planes (one long row)
    {1, 0, 20, 20, 8, 6, 4, 3, 5, 4},    // rectangle larger than what is left
    {8, 0, 5, 4, 8, 6, 0, 0, 5, 4},      // x == dstWidth
    {0, 6, 5, 4, 8, 6, 0, 0, 5, 4},      // y == dstHeight
    {0, 0, 5, 4, 8, 6, 5, 0, 5, 4},      // srcX == srcWidth
    {-5, 0, 5, 4, 8, 6, 0, 0, 5, 4},     // slides fully off the left
    {0, 0, 0, 4, 8, 6, 0, 0, 5, 4},      // empty rectangle (mix/sub)
    {0, 0, -3, 4, 8, 6, 0, 0, 5, 4},     // negative rectangle (mix/sub)
    {2, 2, 5, 4, 0, 6, 0, 0, 5, 4},      // empty destination
    {2, 2, 5, 4, 8, 6, 0, 0, 5, -1},     // negative source height
    {0, 0, 1, 1, 1, 1, 0, 0, 1, 1},      // single element
};

TEST(MaskExports, PlacementMatchesThePixelModelAtEveryLevel) {
  const uint32_t seed = 0x3A5C;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  ForEachLevel([&](KernelLevel) {
    for (Op op : kOps) {
      for (const Call& c : kPlacements) {
        SCOPED_TRACE(::testing::Message()
                     << Name(op) << " x=" << c.x << " y=" << c.y << " w=" << c.width << " h="
                     << c.height << " dst=" << c.dst_width << "x" << c.dst_height << " src@"
                     << c.src_x << "," << c.src_y << " " << c.src_width << "x" << c.src_height);
        const std::size_t unit = op == Op::kFill ? 4 : 1;
        const std::size_t dst_bytes = PlaneBytes(c.dst_width, c.dst_height, unit);
        const std::size_t src_bytes = PlaneBytes(c.src_width, c.src_height, 1);
        const std::vector<uint8_t> before = RandomBytes(dst_bytes, seed);
        const std::vector<uint8_t> src_data = RandomBytes(src_bytes, seed + 1);
        GuardedBuffer dst(dst_bytes, 1);
        PageEndBuffer src(src_bytes);
        std::copy(before.begin(), before.end(), dst.data());
        std::copy(src_data.begin(), src_data.end(), src.data());
        const Model m = Place(op, c);
        EXPECT_EQ(CallExport(op, dst.data(), src.data(), c), m.rejected ? Rejected(op) : Done(op));
        const std::vector<uint8_t> expected = Expected(op, before, src_data, c, m);
        ASSERT_EQ(MismatchMap(expected.data(), dst.data(), std::max(1, c.dst_width) * unit,
                              dst_bytes / std::max<std::size_t>(1, std::max(1, c.dst_width) * unit),
                              unit),
                  "");
        ASSERT_TRUE(dst.GuardsIntact());
      }
    }
  });
}

TEST(MaskExports, ResultCodesAreTheOnesHostsTest) {
  uint8_t dst[16] = {128, 255, 0, 9}, src[16] = {128, 255, 77, 9};
  // Mixing succeeds with the failure-looking code; subtraction reports 0.
  EXPECT_EQ(QN_MixMask(dst, 0, 0, 4, 1, 4, 1, src, 0, 0, 0, 0, 4, 1), QBO_E_FAIL);
  EXPECT_EQ(dst[0], 192);
  EXPECT_EQ(dst[1], 255);
  EXPECT_EQ(dst[2], 77);
  EXPECT_EQ(QN_SubMask(dst, 0, 0, 4, 1, src, 0, 0, 4, 1, 4, 1, 0), 0);
  EXPECT_EQ(dst[0], 64);  // 192 - 128
  // x == dstWidth rejects: mix says 1, subtraction the failure code.
  EXPECT_EQ(QN_MixMask(dst, 4, 0, 4, 1, 4, 1, src, 0, 0, 0, 0, 4, 1), 1);
  EXPECT_EQ(QN_SubMask(dst, 4, 0, 4, 1, src, 0, 0, 4, 1, 4, 1, 0), QBO_E_FAIL);
  EXPECT_EQ(dst[0], 64) << "rejected calls write nothing";
  // Null planes are rejected the same way; the fill always says 1.
  EXPECT_EQ(QN_MixMask(nullptr, 0, 0, 4, 1, 4, 1, src, 0, 0, 0, 0, 4, 1), 1);
  EXPECT_EQ(QN_SubMask(dst, 0, 0, 4, 1, nullptr, 0, 0, 4, 1, 4, 1, 0), QBO_E_FAIL);
  EXPECT_EQ(QN_FillMaskColor(nullptr, 0, 0, 4, 1, src, 0, 0, 4, 1), 1);
  EXPECT_EQ(QN_FillMaskColor(dst, 9, 0, 4, 1, src, 0, 0, 4, 1), 1);
}

// Every argument of every export in turn at the ends of the int32 range
// (and at -1, 0), the others forming a valid call, with planes sized as
// the arguments describe (an 8 GiB plane is only reserved; the touched
// pages are few). Nothing may fault or overflow, and the calls done or
// rejected must be the ones the model predicts.
TEST(MaskExports, ExtremeArgumentsStayInsideThePlanes) {
  const Call base{1, 1, 4, 3, 8, 6, 1, 0, 5, 4};
  const int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX - 1, INT32_MAX};
  int32_t Call::*const fields[] = {&Call::x,         &Call::y,          &Call::width, &Call::height,
                                   &Call::dst_width, &Call::dst_height, &Call::src_x, &Call::src_y,
                                   &Call::src_width, &Call::src_height};
  for (Op op : kOps) {
    for (int field = 0; field < 10; ++field) {
      if (op == Op::kFill && (field == 2 || field == 3)) continue;  // not arguments of the fill
      for (int32_t value : extremes) {
        Call c = base;
        c.*fields[field] = value;
        // A huge plane is one row or one column high, and the placement
        // starts on it, so the call still does work. It is as large as
        // the address space allows.
        const std::size_t unit = op == Op::kFill ? 4 : 1;
        if (value > 1000) {
          if (field == 4 || field == 5) c.dst_width = c.dst_height = 1;
          if (field == 4 || field == 5) c.x = c.y = 0;
          if (field == 8 || field == 9) c.src_width = c.src_height = 1;
          if (field == 8 || field == 9) c.src_x = c.src_y = 0;
          const bool plane_size = field == 4 || field == 5 || field == 8 || field == 9;
          c.*fields[field] = plane_size ? std::min(value, LargestPlane(field < 8 ? unit : 1)) : value;
        }
        SCOPED_TRACE(::testing::Message() << Name(op) << " field " << field << " = " << value);
        PageEndBuffer dst(PlaneBytes(c.dst_width, c.dst_height, unit));
        PageEndBuffer src(PlaneBytes(c.src_width, c.src_height, 1));
        if (src.size() <= 64) std::memset(src.data(), 200, src.size());
        const Model m = Place(op, c);
        ASSERT_EQ(CallExport(op, dst.data(), src.data(), c), m.rejected ? Rejected(op) : Done(op));
        if (m.rejected || src.size() > 64) continue;
        // A fresh plane is zero: the covered destination elements change
        // only where the operation moves 0 with a source of 200.
        const int64_t kr = m.rows.front(), kc = m.cols.front();
        const uint8_t* first = dst.data() + ((c.y + kr) * c.dst_width + c.x + kc) * unit;
        EXPECT_EQ(first[unit - 1], op == Op::kMix ? 200 : 0);
      }
    }
  }
}

}  // namespace
}  // namespace qbo::test
