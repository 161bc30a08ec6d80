// 24-bit to 32-bit: the rows at every level, the Frame export and its
// second name, the Split export's own path and its acceleration hand-off.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "colorspace/rgb24_to_rgba_row.h"
#include "tests/fakes/fake_vela.h"
#include "tests/support/fake_vela_vid.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr uint8_t kUntouched = 0xCD;

TEST(Rgb24Rows, ReferenceCopiesBytesAndSetsAlpha) {
  const uint8_t src[6] = {10, 20, 30, 0, 255, 1};
  const uint8_t alpha[2] = {7, 0};
  uint8_t opaque[8], with_alpha[8];
  Rgb24ToRgbaRow_C(src, nullptr, opaque, 2);
  Rgb24AlphaToRgbaRow_C(src, alpha, with_alpha, 2);
  EXPECT_EQ(std::vector<uint8_t>(opaque, opaque + 8),
            (std::vector<uint8_t>{10, 20, 30, 255, 0, 255, 1, 255}));
  EXPECT_EQ(std::vector<uint8_t>(with_alpha, with_alpha + 8),
            (std::vector<uint8_t>{10, 20, 30, 7, 0, 255, 1, 0}));
}

struct RowUnderTest {
  const char* name;
  Rgb24ToRgbaRowFn fn, reference;
  bool alpha;
  int multiple;
  KernelLevel level;
};

#define QBO_ROWS(Name, alpha)                                                       \
  {#Name "_SSE2", Name##_SSE2, Name##_C, alpha, 16, KernelLevel::kSse2},            \
      {#Name "_Any_SSE2", Name##_Any_SSE2, Name##_C, alpha, 1, KernelLevel::kSse2}, \
      {#Name "_AVX2", Name##_AVX2, Name##_C, alpha, 16, KernelLevel::kAvx2}, {      \
#Name "_Any_AVX2", Name##_Any_AVX2, Name##_C, alpha, 1, KernelLevel::kAvx2      \
  }

const RowUnderTest kRows[] = {QBO_ROWS(Rgb24ToRgbaRow, false), QBO_ROWS(Rgb24AlphaToRgbaRow, true)};
#undef QBO_ROWS

TEST(Rgb24Rows, SimdRowsMatchTheReference) {
  std::vector<int> widths;
  for (int w = 1; w <= 2 * 16 + 15; ++w) widths.push_back(w);
  widths.insert(widths.end(), {719, 1920, 4097});
  for (const RowUnderTest& row : kRows) {
    if (row.level > MachineKernelLevel()) continue;
    for (int width : widths) {
      if (width % row.multiple != 0) continue;
      for (std::size_t offset = 0; offset < 4; ++offset) {
        const uint32_t seed = 40u + static_cast<uint32_t>(width);
        SCOPED_TRACE(::testing::Message()
                     << row.name << " width=" << width << " offset=" << offset << " seed=" << seed);
        // Sources end at an inaccessible page; the destination sits between
        // guards at a varying offset.
        PageEndBuffer src(3 * static_cast<std::size_t>(width));
        PageEndBuffer alpha(static_cast<std::size_t>(width));
        FillRandom(src.data(), src.size(), seed);
        FillRandom(alpha.data(), alpha.size(), seed + 1);
        GuardedBuffer expected(4 * static_cast<std::size_t>(width), offset);
        GuardedBuffer actual(4 * static_cast<std::size_t>(width), offset);
        const uint8_t* a = row.alpha ? alpha.data() : nullptr;
        row.reference(src.data(), a, expected.data(), width);
        row.fn(src.data(), a, actual.data(), width);
        ASSERT_EQ(MismatchMap(expected.data(), actual.data(), actual.size(), 1, 4), "");
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

// A 24-bit image whose rows are told apart by their bytes, plus an alpha
// plane, both with padded pitches.
struct Image24 {
  int width, height, pitch, alpha_pitch;
  std::vector<uint8_t> rgb, alpha;
  Image24(int w, int h, uint32_t seed)
      : width(w),
        height(h),
        pitch(3 * w + 5),
        alpha_pitch(w + 3),
        rgb(RandomBytes(static_cast<std::size_t>(pitch) * h, seed)),
        alpha(RandomBytes(static_cast<std::size_t>(alpha_pitch) * h, seed + 9)) {}
  // Pixel x of row y as 32-bit bytes, with alpha from alpha row `arow`
  // (or 255 when arow < 0).
  std::vector<uint8_t> Expanded(int y, int arow) const {
    std::vector<uint8_t> out;
    for (int x = 0; x < width; ++x) {
      const uint8_t* p = rgb.data() + static_cast<std::size_t>(y) * pitch + 3 * x;
      out.insert(out.end(),
                 {p[0], p[1], p[2], arow < 0 ? uint8_t{255} : alpha[arow * alpha_pitch + x]});
    }
    return out;
  }
};

std::vector<uint8_t> DstRow(const std::vector<uint8_t>& dst, int pitch, int row, int bytes) {
  return std::vector<uint8_t>(dst.begin() + row * pitch, dst.begin() + row * pitch + bytes);
}

using FrameExport = void(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, const void*, int32_t,
                                      int32_t, int32_t, int32_t, int32_t);

TEST(Rgb24ToRgbaFrame, FlipsSourceAndAlphaIndependently) {
  const FrameExport names[] = {QN_CS_24_to_32_Frame, ZQCS_24_to_32_Frame};
  ForEachLevel([&](KernelLevel) {
    for (FrameExport frame : names) {
      for (int use_alpha : {0, 1}) {
        for (int flip : {0, 1}) {
          for (int alpha_flip : {0, 1}) {
            SCOPED_TRACE(::testing::Message() << "alpha=" << use_alpha << " flip=" << flip
                                              << " alpha_flip=" << alpha_flip);
            const Image24 img(21, 4, 3);
            const int dst_pitch = 4 * 21 + 4;
            std::vector<uint8_t> dst(static_cast<std::size_t>(dst_pitch) * 4, kUntouched);
            frame(dst.data(), dst_pitch, img.rgb.data(), img.pitch,
                  use_alpha ? img.alpha.data() : nullptr, img.alpha_pitch, 21, 4, flip, alpha_flip);
            for (int i = 0; i < 4; ++i) {
              const int arow = use_alpha ? (alpha_flip ? 3 - i : i) : -1;
              EXPECT_EQ(DstRow(dst, dst_pitch, i, 84), img.Expanded(flip ? 3 - i : i, arow));
              EXPECT_EQ(DstRow(dst, dst_pitch, i, dst_pitch).back(), kUntouched);
            }
          }
        }
      }
    }
  });
}

TEST(Rgb24ToRgbaFrame, SecondNameIsTheSameEntry) {
#if !defined(_WIN32)
  EXPECT_EQ(reinterpret_cast<void*>(&ZQCS_24_to_32_Frame),
            reinterpret_cast<void*>(&QN_CS_24_to_32_Frame));
#endif
  const uint8_t src[3] = {10, 20, 30};
  const uint8_t alpha[1] = {7};
  uint8_t dst[4];
  ZQCS_24_to_32_Frame(dst, 4, src, 3, alpha, 1, 1, 1, 0, 0);
  EXPECT_EQ(std::vector<uint8_t>(dst, dst + 4), (std::vector<uint8_t>{10, 20, 30, 7}));
}

TEST(Rgb24ToRgbaFrame, EmptySizesWriteNothing) {
  const Image24 img(4, 2, 1);
  for (auto [width, height] : {std::pair{0, 2}, {4, 0}, {-1, 2}, {4, -2}}) {
    std::vector<uint8_t> dst(64, kUntouched), dst1(64, kUntouched);
    QN_CS_24_to_32_Frame(dst.data(), 16, img.rgb.data(), img.pitch, img.alpha.data(),
                         img.alpha_pitch, width, height, 0, 0);
    QN_CS_24_to_32_Split(dst.data(), 16, dst1.data(), 16, img.rgb.data(), img.pitch, nullptr, 0,
                         width, height, 0, 0);
    EXPECT_EQ(dst, std::vector<uint8_t>(64, kUntouched));
    EXPECT_EQ(dst1, std::vector<uint8_t>(64, kUntouched));
  }
}

TEST(Rgb24ToRgbaSplit, AlternatesRowsAndCopiesTheOddLastRowWhole) {
  ForEachLevel([](KernelLevel) {
    for (int height : {1, 4, 5}) {
      for (int flip : {0, 1}) {
        for (int alpha_flip : {0, 1}) {
          SCOPED_TRACE(::testing::Message()
                       << "height=" << height << " flip=" << flip << " alpha_flip=" << alpha_flip);
          const Image24 img(19, height, 8);
          const int pitch0 = 4 * 19 + 8, pitch1 = 4 * 19 + 4;  // the copy takes pitch1
          const int rows = (height + 1) / 2;
          std::vector<uint8_t> dst0(static_cast<std::size_t>(pitch0) * rows, kUntouched);
          std::vector<uint8_t> dst1(static_cast<std::size_t>(pitch1) * rows, kUntouched);
          QN_CS_24_to_32_Split(dst0.data(), pitch0, dst1.data(), pitch1, img.rgb.data(), img.pitch,
                               img.alpha.data(), img.alpha_pitch, 19, height, flip, alpha_flip);
          auto src_row = [&](int i) { return flip ? height - 1 - i : i; };
          auto alpha_row = [&](int i) { return alpha_flip ? height - 1 - i : i; };
          for (int k = 0; 2 * k + 1 < height; ++k) {
            EXPECT_EQ(DstRow(dst0, pitch0, k, 76), img.Expanded(src_row(2 * k), alpha_row(2 * k)));
            EXPECT_EQ(DstRow(dst1, pitch1, k, 76),
                      img.Expanded(src_row(2 * k + 1), alpha_row(2 * k + 1)));
          }
          if (height & 1) {
            const int k = height / 2;
            EXPECT_EQ(DstRow(dst0, pitch0, k, 76),
                      img.Expanded(src_row(height - 1), alpha_row(height - 1)));
            // The whole first pitch1 bytes of the row, padding included.
            EXPECT_EQ(DstRow(dst1, pitch1, k, pitch1), DstRow(dst0, pitch0, k, pitch1));
            EXPECT_EQ(dst0[k * pitch0 + pitch1], kUntouched);
          }
        }
      }
    }
  });
}

TEST(Rgb24ToRgbaSplit, NegativeDestinationPitchesCopyBySize) {
  const Image24 img(5, 3, 12);
  const int pitch = 24;
  std::vector<uint8_t> dst0(2 * pitch, kUntouched), dst1(2 * pitch, kUntouched);
  // Both destinations written from their lower row upwards.
  QN_CS_24_to_32_Split(dst0.data() + pitch, -pitch, dst1.data() + pitch, -pitch, img.rgb.data(),
                       img.pitch, nullptr, 0, 5, 3, 0, 0);
  EXPECT_EQ(DstRow(dst0, pitch, 1, 20), img.Expanded(0, -1));
  EXPECT_EQ(DstRow(dst1, pitch, 1, 20), img.Expanded(1, -1));
  EXPECT_EQ(DstRow(dst0, pitch, 0, 20), img.Expanded(2, -1));
  EXPECT_EQ(DstRow(dst1, pitch, 0, pitch), DstRow(dst0, pitch, 0, pitch));
}

TEST(Rgb24ToRgbaSplit, HandsTheJobToVelaVidAndIgnoresTheAlphaPlane) {
  FakeVelaVid vela;
  const Image24 img(6, 4, 2);
  for (int flip : {0, 1, 9}) {
    for (int alpha_flip : {0, 1}) {
      SCOPED_TRACE(::testing::Message() << "flip=" << flip << " alpha_flip=" << alpha_flip);
      std::vector<uint8_t> dst0(64, kUntouched), dst1(64, kUntouched);
      const int before = vela.call_count();
      QN_CS_24_to_32_Split(dst0.data(), 32, dst1.data(), -32, img.rgb.data(), img.pitch,
                           img.alpha.data(), img.alpha_pitch, 6, 4, flip, alpha_flip);
      ASSERT_EQ(vela.call_count(), before + 1);
      const FakeVelaCall& call = vela.last_call();
      EXPECT_EQ(call.array, kFakeConvertArray);
      EXPECT_EQ(call.index, 16);
      ASSERT_EQ(call.argc, 11);
      const intptr_t expected[11] = {reinterpret_cast<intptr_t>(dst0.data()),
                                     32,
                                     reinterpret_cast<intptr_t>(dst1.data()),
                                     -32,
                                     reinterpret_cast<intptr_t>(img.rgb.data()),
                                     img.pitch,
                                     6,
                                     4,
                                     0,
                                     255,
                                     flip != 0 ? 1 : 0};
      for (int i = 0; i < 11; ++i) EXPECT_EQ(call.args[i], expected[i]) << "argument " << i;
      EXPECT_EQ(dst0, std::vector<uint8_t>(64, kUntouched));
      EXPECT_EQ(dst1, std::vector<uint8_t>(64, kUntouched));
    }
  }
  // The Frame export never dispatches.
  const int before = vela.call_count();
  std::vector<uint8_t> dst(4 * 6 * 4);
  QN_CS_24_to_32_Frame(dst.data(), 24, img.rgb.data(), img.pitch, nullptr, 0, 6, 4, 0, 0);
  EXPECT_EQ(vela.call_count(), before);
}

TEST(Rgb24ToRgbaSplit, RunsItsOwnPathWhenAnyLinkIsMissing) {
  const Image24 img(6, 2, 5);
  const struct {
    const char* what;
    void (*cut)(FakeVelaVid&);
  } cuts[] = {
      {"no module", [](FakeVelaVid& v) { v.RemoveTable(); }},
      {"no convert array", [](FakeVelaVid& v) { v.SetArrayNull(kFakeConvertArray, true); }},
      {"no entry 16", [](FakeVelaVid& v) { v.SetEntryPresent(kFakeConvertArray, 16, false); }},
  };
  for (const auto& cut : cuts) {
    SCOPED_TRACE(cut.what);
    FakeVelaVid vela;
    cut.cut(vela);
    std::vector<uint8_t> dst0(24, kUntouched), dst1(24, kUntouched);
    QN_CS_24_to_32_Split(dst0.data(), 24, dst1.data(), 24, img.rgb.data(), img.pitch,
                         img.alpha.data(), img.alpha_pitch, 6, 2, 0, 0);
    EXPECT_EQ(vela.call_count(), 0);
    EXPECT_EQ(dst0, img.Expanded(0, 0));
    EXPECT_EQ(dst1, img.Expanded(1, 1));
  }
}

}  // namespace
}  // namespace qbo::test
