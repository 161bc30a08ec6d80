// Planar 4:2:2 / 4:2:0 to 32-bit: the row against hand-worked pixels and
// every SIMD row against the reference; the exports against a model that
// builds each output row's chroma from the field row scheme.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "colorspace/planar_to_rgba_row.h"
#include "frame/coef_block.h"
#include "frame/platform.h"
#include "tests/support/fake_platform.h"
#include "tests/yuvlayout/test_planes.h"

namespace qbo::test {
namespace {

std::vector<uint8_t> ConvertC(bool bgra, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, bool bt709) {
  std::vector<uint8_t> out(4 * static_cast<std::size_t>(width));
  const YuvToRgbVectors vectors = YuvToRgbVectorsFor(bt709);
  (bgra ? PlanarToBgraRow_C : PlanarToRgbaRow_C)(out.data(), y, u, v, width, &vectors);
  return out;
}

TEST(PlanarToRgbaRow, HandWorkedPixels) {
  // Neutral chroma, Y 235: (32 x 235 + 16) >> 5 = 235 in every channel.
  const uint8_t y235[3] = {235, 235, 235}, neutral[2] = {128, 128};
  for (bool bgra : {false, true}) {
    for (bool bt709 : {false, true}) {
      EXPECT_EQ(ConvertC(bgra, y235, neutral, neutral, 3, bt709),
                (std::vector<uint8_t>{235, 235, 235, 255, 235, 235, 235, 255, 235, 235, 235, 255}));
    }
  }
  // Width 9, Y 100, U 128, V 128 except sample 4 with V 228, BT.601.
  // Pixel 7 (odd) mixes samples 3 and 4: dV' = 64 x (0 + 100) = 6400;
  //   R = (3200 + floor(22970 x 6400 / 65536) = 2243 + 16) >> 5 = 170,
  //   G = (3200 + floor(-11700 x 6400 / 65536) = -1143 + 16) >> 5 = 64, B = 100.
  // Pixel 8 (even, the last, its own sample 4): dV' = 12800;
  //   R = (3200 + 4486 + 16) >> 5 = 240, G = (3200 - 2286 + 16) >> 5 = 29, B = 100.
  // Pixel 6 (even, sample 3) stays grey 100.
  uint8_t y[9], u[5], v[5];
  std::memset(y, 100, sizeof y);
  std::memset(u, 128, sizeof u);
  std::memset(v, 128, sizeof v);
  v[4] = 228;
  const std::vector<uint8_t> rgba = ConvertC(false, y, u, v, 9, false);
  EXPECT_EQ(std::vector<uint8_t>(rgba.begin() + 24, rgba.end()),
            (std::vector<uint8_t>{100, 100, 100, 255, 170, 64, 100, 255, 240, 29, 100, 255}));
  const std::vector<uint8_t> bgra = ConvertC(true, y, u, v, 9, false);
  EXPECT_EQ(std::vector<uint8_t>(bgra.begin() + 28, bgra.end()),
            (std::vector<uint8_t>{100, 64, 170, 255, 100, 29, 240, 255}));
  // Width 1: one pixel, its own sample. Y 255, V 255 at BT.601:
  // R = (8160 + floor(22970 x 16256 / 65536) = 5697 + 16) >> 5 = 433 -> 255.
  const uint8_t y255 = 255, v255 = 255, u128 = 128;
  EXPECT_EQ(ConvertC(false, &y255, &u128, &v255, 1, false)[0], 255);
  // Y 0, U 0 at BT.601: B = 16 + floor(29032 x -16384 / 65536) < 0 -> 0.
  const uint8_t y0 = 0, u0 = 0;
  EXPECT_EQ(ConvertC(false, &y0, &u0, &u128, 1, false)[2], 0);
}

TEST(PlanarToRgbaRow, SimdRowsMatchTheReference) {
  struct Row {
    const char* name;
    PlanarToPixelsRowFn fn, reference;
    KernelLevel level;
    int block;  // 0: any width
  };
  const Row rows[] = {
      {"RGBA SSE2", PlanarToRgbaRow_SSE2, PlanarToRgbaRow_C, KernelLevel::kSse2, 8},
      {"BGRA SSE2", PlanarToBgraRow_SSE2, PlanarToBgraRow_C, KernelLevel::kSse2, 8},
      {"RGBA Any_SSE2", PlanarToRgbaRow_Any_SSE2, PlanarToRgbaRow_C, KernelLevel::kSse2, 0},
      {"BGRA Any_SSE2", PlanarToBgraRow_Any_SSE2, PlanarToBgraRow_C, KernelLevel::kSse2, 0},
      {"RGBA AVX2", PlanarToRgbaRow_AVX2, PlanarToRgbaRow_C, KernelLevel::kAvx2, 16},
      {"BGRA AVX2", PlanarToBgraRow_AVX2, PlanarToBgraRow_C, KernelLevel::kAvx2, 16},
      {"RGBA Any_AVX2", PlanarToRgbaRow_Any_AVX2, PlanarToRgbaRow_C, KernelLevel::kAvx2, 0},
      {"BGRA Any_AVX2", PlanarToBgraRow_Any_AVX2, PlanarToBgraRow_C, KernelLevel::kAvx2, 0},
  };
  std::vector<int> widths;
  for (int w = 1; w <= 2 * 32 + 15; ++w) widths.push_back(w);
  widths.insert(widths.end(), {719, 1920});
  for (const Row& row : rows) {
    if (row.level > MachineKernelLevel()) continue;
    for (int width : widths) {
      if (row.block && width % row.block) continue;
      for (std::size_t offset : {0, 1, 3}) {
        for (bool bt709 : {false, true}) {
          const uint32_t seed = 77u * static_cast<uint32_t>(width) + static_cast<uint32_t>(offset);
          SCOPED_TRACE(::testing::Message() << row.name << " width=" << width << " offset="
                                            << offset << " bt709=" << bt709 << " seed=" << seed);
          // A whole-block row reads one sample past its blocks; the Any
          // rows read exactly the row's samples. Sources end at a page.
          const std::size_t samples = static_cast<std::size_t>(
              row.block ? width / 2 + 1 : (width + 1) / 2);
          PageEndBuffer y(static_cast<std::size_t>(width)), u(samples), v(samples);
          FillRandom(y.data(), y.size(), seed);
          FillRandom(u.data(), samples, seed + 1);
          FillRandom(v.data(), samples, seed + 2);
          const std::size_t bytes = 4 * static_cast<std::size_t>(width);
          GuardedBuffer want(bytes, offset), got(bytes, offset);
          const YuvToRgbVectors vectors = YuvToRgbVectorsFor(bt709);
          // The whole-block rows convert blocks that are not the row's end.
          const int ref_width = row.block ? width + 1 : width;
          std::vector<uint8_t> ref(4 * static_cast<std::size_t>(ref_width));
          std::vector<uint8_t> ref_y(y.data(), y.data() + width);
          ref_y.push_back(0);
          row.reference(ref.data(), ref_y.data(), u.data(), v.data(), ref_width, &vectors);
          std::memcpy(want.data(), ref.data(), bytes);
          row.fn(got.data(), y.data(), u.data(), v.data(), width, &vectors);
          ASSERT_EQ(MismatchMap(want.data(), got.data(), bytes, 1, 4), "");
          ASSERT_TRUE(got.GuardsIntact());
        }
      }
    }
  }
}

// ---- exports -------------------------------------------------------------

using PlanarFrameFn = void(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, const void*, int32_t,
                                        const void*, int32_t, int32_t, int32_t, int32_t, int32_t);
using PlanarSplitFn = void(QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t,
                                        const void*, int32_t, const void*, int32_t, int32_t,
                                        int32_t, int32_t, int32_t);

struct PlanarExport {
  const char* name;
  PlanarFrameFn frame;
  PlanarSplitFn split;
  bool bgra;
  bool is420;
};

const PlanarExport kPlanarExports[] = {
    {"422 RGBA", QN_CS_YUV422_RGBA_Frame, QN_CS_YUV422_RGBA_Split, false, false},
    {"422 BGRA", QN_CS_YUV422_BGRA_Frame, QN_CS_YUV422_BGRA_Split, true, false},
    {"420 RGBA", QN_CS_YUV420_RGBA_Frame, QN_CS_YUV420_RGBA_Split, false, true},
    {"420 BGRA", QN_CS_YUV420_BGRA_Frame, QN_CS_YUV420_BGRA_Split, true, true},
};

// The chroma samples of field f's row r in a 4:2:0 picture, by the plain
// field rule (first row as is, mixes of P, C and C, N, a last pair ending
// on C[q - 1] unchanged), field rows clamped to the field's own.
std::vector<uint8_t> ModelFieldChroma(TestPlane& plane, int samples, int h2, int f, int r) {
  const int q = (h2 + 1) / 2, own = (h2 + 1 - f) / 2;
  std::vector<uint8_t> out(samples);
  for (int i = 0; i < samples; ++i) {
    auto C = [&](int k) -> int {
      return plane.Row(own ? 2 * std::clamp(k, 0, own - 1) + f : 0)[i];
    };
    int value;
    const int k = r / 2;
    if (r == 2 * q - 2) {
      value = (C(q - 2) + 3 * C(q - 1) + 2) >> 2;
    } else if (h2 % 2 == 0 && r == 2 * q - 1) {
      value = C(q - 1);
    } else if (r == 0) {
      value = C(0);
    } else if (r % 2) {
      value = (3 * C(k) + C(k + 1) + 2) >> 2;
    } else {
      value = (C(k - 1) + 3 * C(k) + 2) >> 2;
    }
    out[i] = static_cast<uint8_t>(value);
  }
  return out;
}

void Put(Rows& rows, int r, const std::vector<uint8_t>& bytes) {
  std::copy(bytes.begin(), bytes.end(), rows[r].begin());
}

TEST(PlanarToRgba, ExportsMatchTheModel) {
  const int heights[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 14, 576};
  ForEachLevel([&](KernelLevel) {
    for (const PlanarExport& e : kPlanarExports) {
      for (int height : heights) {
        for (int width : {1, 2, 9, 16, 33, 79}) {
          if (height == 576 && width > 9) continue;
          const int variant = (width + height) % 4;
          const bool flip = variant & 1, bt709 = variant & 2, upward = height % 3 == 0;
          SCOPED_TRACE(::testing::Message() << e.name << " " << width << "x" << height
                                            << " flip=" << flip << " bt709=" << bt709
                                            << (upward ? " upward" : ""));
          const int samples = (width + 1) / 2, h2 = height / 2;
          const int chroma_rows = e.is420 ? h2 : height;
          TestPlane y(width, height, 41, upward), u(samples, chroma_rows, 42, !upward, 1),
              v(samples, chroma_rows, 43, false, 2);
          TestPlane frame(4 * width, height, 44, upward, 3), top(4 * width, h2, 45),
              bottom(4 * width, h2, 46, true, 1);
          Rows want_frame = frame.Snapshot(), want_top = top.Snapshot(),
               want_bottom = bottom.Snapshot();
          auto convert = [&](int luma_row, const uint8_t* cu, const uint8_t* cv) {
            return ConvertC(e.bgra, y.Row(luma_row), cu, cv, width, bt709);
          };
          auto frame_row = [&](int i) { return flip ? height - 1 - i : i; };
          auto field_row = [&](int j) { return flip ? h2 - 1 - j : j; };
          if (!e.is420) {
            for (int i = 0; i < height; ++i) Put(want_frame, frame_row(i), convert(i, u.Row(i), v.Row(i)));
            for (int i = 0; i < 2 * h2; ++i) {
              Put(i % 2 ? want_bottom : want_top, field_row(i / 2), convert(i, u.Row(i), v.Row(i)));
            }
          } else {
            for (int f = 0; f < 2; ++f) {
              for (int r = 0; r < h2; ++r) {
                const std::vector<uint8_t> cu = ModelFieldChroma(u, samples, h2, f, r);
                const std::vector<uint8_t> cv = ModelFieldChroma(v, samples, h2, f, r);
                const std::vector<uint8_t> row = convert(2 * r + f, cu.data(), cv.data());
                Put(want_frame, frame_row(2 * r + f), row);
                Put(f ? want_bottom : want_top, field_row(r), row);
              }
            }
          }
          e.frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(), u.Pitch(),
                  v.First(), v.Pitch(), width, height, bt709 ? 5 : 0, flip ? -1 : 0);
          e.split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(), y.Pitch(),
                  u.First(), u.Pitch(), v.First(), v.Pitch(), width, height, bt709 ? 1 : 0,
                  flip ? 1 : 0);
          ASSERT_EQ(Differences(want_frame, frame), "");
          ASSERT_EQ(Differences(want_top, top), "");
          ASSERT_EQ(Differences(want_bottom, bottom), "");
          ASSERT_TRUE(frame.GuardsIntact() && top.GuardsIntact() && bottom.GuardsIntact());
        }
      }
    }
  });
}

TEST(PlanarToRgba, Frame420KeepsEachFieldsChromaInItsOwnRows) {
  // Top-field chroma rows hold U 40 / V 60, the bottom's U 200 / V 220;
  // every field mix keeps those values, so each output row must equal a
  // row converted from its own field's constant chroma.
  ForEachLevel([](KernelLevel) {
    for (int height : {8, 10, 11, 12}) {
      SCOPED_TRACE(::testing::Message() << "height=" << height);
      const int width = 40, h2 = height / 2;
      TestPlane y(width, height, 1), u(width / 2, h2, 2), v(width / 2, h2, 3);
      for (int r = 0; r < h2; ++r) {
        std::memset(u.Row(r), r % 2 ? 200 : 40, width / 2);
        std::memset(v.Row(r), r % 2 ? 220 : 60, width / 2);
      }
      TestPlane frame(4 * width, height, 4);
      QN_CS_YUV420_BGRA_Frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(),
                              u.Pitch(), v.First(), v.Pitch(), width, height, 0, 0);
      const std::vector<uint8_t> cu[2] = {std::vector<uint8_t>(20, 40), std::vector<uint8_t>(20, 200)};
      const std::vector<uint8_t> cv[2] = {std::vector<uint8_t>(20, 60), std::vector<uint8_t>(20, 220)};
      for (int r = 0; r < 2 * h2; ++r) {
        const std::vector<uint8_t> want =
            ConvertC(true, y.Row(r), cu[r % 2].data(), cv[r % 2].data(), width, false);
        ASSERT_EQ(std::memcmp(frame.Row(r), want.data(), want.size()), 0) << "row " << r;
      }
    }
  });
}

TEST(PlanarToRgba, Height8UsesFieldChromaRowsAndTheirQuarterMixes) {
  // Luma rows 0 and 2 use chroma row 0 and (3 x row 0 + row 2 + 2) >> 2;
  // rows 1 and 3 use chroma row 1 and (3 x row 1 + row 3 + 2) >> 2.
  // Plane rows (U = V): 128, 0, 228, 100. Row 2: (384 + 228 + 2) >> 2 = 153;
  // row 3: (0 + 100 + 2) >> 2 = 25.
  const uint8_t plane[4] = {128, 0, 228, 100};
  uint8_t y[8][2];
  std::memset(y, 90, sizeof y);
  uint8_t out[8][8];
  QN_CS_YUV420_RGBA_Frame(out, 8, y, 2, plane, 1, plane, 1, 2, 8, 0, 0);
  const uint8_t want_chroma[4] = {128, 0, 153, 25};
  for (int r = 0; r < 4; ++r) {
    const std::vector<uint8_t> want =
        ConvertC(false, y[r], &want_chroma[r], &want_chroma[r], 2, false);
    EXPECT_EQ(std::memcmp(out[r], want.data(), 8), 0) << "row " << r;
  }
}

TEST(PlanarToRgba, NeverReadsPastTheChromaPlanes) {
  // Packed chroma planes of height / 2 rows (4:2:0) ending at a page.
  for (int height : {2, 3, 6, 7, 10, 11}) {
    for (int width : {17, 34}) {
      SCOPED_TRACE(::testing::Message() << width << "x" << height);
      const int samples = (width + 1) / 2, h2 = height / 2;
      PageEndBuffer u(static_cast<std::size_t>(samples * h2)),
          v(static_cast<std::size_t>(samples * h2));
      FillRandom(u.data(), u.size(), 1);
      FillRandom(v.data(), v.size(), 2);
      TestPlane y(width, height, 3), frame(4 * width, height, 4), top(4 * width, h2, 5),
          bottom(4 * width, h2, 6);
      QN_CS_YUV420_RGBA_Frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.data(),
                              samples, v.data(), samples, width, height, 0, 1);
      QN_CS_YUV420_BGRA_Split(top.First(), top.Pitch(), bottom.First(), bottom.Pitch(), y.First(),
                              y.Pitch(), u.data(), samples, v.data(), samples, width, height, 1, 0);
      EXPECT_TRUE(frame.GuardsIntact() && top.GuardsIntact() && bottom.GuardsIntact());
    }
  }
}

TEST(PlanarToRgba, FailedScratchWritesNothing) {
  FakePlatform fake;
  fake.fail_aligned_alloc_at = 1;
  SetPlatformForTesting(&fake);
  TestPlane y(8, 8, 1), u(4, 4, 2), v(4, 4, 3), frame(32, 8, 4);
  const Rows before = frame.Snapshot();
  QN_CS_YUV420_RGBA_Frame(frame.First(), frame.Pitch(), y.First(), y.Pitch(), u.First(), u.Pitch(),
                          v.First(), v.Pitch(), 8, 8, 0, 0);
  SetPlatformForTesting(nullptr);
  EXPECT_EQ(Differences(before, frame), "");
}

}  // namespace
}  // namespace qbo::test
