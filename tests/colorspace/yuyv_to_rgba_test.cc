// YUYV to 32-bit and 24-bit exports: row placement (flip, negative pitches,
// fields), odd widths, the acceleration hand-off, at every kernel level.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "colorspace/yuyv_to_rgba_row.h"
#include "tests/fakes/fake_vela.h"
#include "tests/support/fake_vela_vid.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr uint8_t kUntouched = 0xCD;

using FrameExport = int32_t(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, int32_t, int32_t,
                                         int32_t, int32_t);

struct Layout {
  const char* name;
  FrameExport frame;
  YuyvToPixelsRowFn reference;
  int bytes_per_pixel;
};

const Layout kLayouts[] = {
    {"RGBA", QN_CS_YUYV2RGBA_Frame, YuyvToRgbaRow_C, 4},
    {"BGRA", QN_CS_YUYV2BGRA_Frame, YuyvToBgraRow_C, 4},
    {"RGB", QN_CS_YUYV2RGB_Frame, YuyvToRgb24Row_C, 3},
    {"BGR", QN_CS_YUYV2BGR_Frame, YuyvToRgb24Row_C, 3},
};

// A YUYV source of `rows` rows whose pitch has `pad` spare bytes.
struct Source {
  int width, rows, pitch;
  std::vector<uint8_t> bytes;
  Source(int w, int r, int pad, uint32_t seed)
      : width(w),
        rows(r),
        pitch(2 * (w + (w & 1)) + pad),
        bytes(RandomBytes(static_cast<std::size_t>(pitch) * r, seed)) {}
  const uint8_t* Row(int i) const { return bytes.data() + static_cast<std::size_t>(i) * pitch; }
};

// The destination row the reference row makes from one source row.
std::vector<uint8_t> ReferenceRow(const Layout& layout, const uint8_t* src, int width, bool bt709) {
  const int even = width + (width & 1);
  std::vector<uint8_t> out(static_cast<std::size_t>(layout.bytes_per_pixel) * even);
  const YuvToRgbVectors v = YuvToRgbVectorsFor(bt709);
  layout.reference(src, out.data(), even, &v);
  return out;
}

// Checks destination row `row` (pitch `dst_pitch`, pixels plus padding)
// against `expected`; the padding must be untouched.
void ExpectRow(const std::vector<uint8_t>& dst, int dst_pitch, int row,
               const std::vector<uint8_t>& expected) {
  const uint8_t* got = dst.data() + static_cast<std::size_t>(row) * dst_pitch;
  ASSERT_EQ(MismatchMap(expected.data(), got, expected.size(), 1), "") << "row " << row;
  for (std::size_t i = expected.size(); i < static_cast<std::size_t>(dst_pitch); ++i) {
    ASSERT_EQ(got[i], kUntouched) << "row " << row << " byte " << i << " past the pixels";
  }
}

TEST(YuyvFrame, RowsLandWhereFlipAndPitchesSay) {
  ForEachLevel([](KernelLevel) {
    for (const Layout& layout : kLayouts) {
      for (int width : {1, 2, 3, 9, 10, 17, 18, 33, 719}) {
        for (int flip : {0, 1}) {
          for (int bt709 : {0, 1}) {
            SCOPED_TRACE(::testing::Message() << layout.name << " width=" << width
                                              << " flip=" << flip << " bt709=" << bt709);
            const int height = 3;
            const Source src(width, height, 6, 500u + static_cast<uint32_t>(width));
            const int row_bytes = layout.bytes_per_pixel * (width + (width & 1));
            const int dst_pitch = row_bytes + 5;
            std::vector<uint8_t> dst(static_cast<std::size_t>(dst_pitch) * height, kUntouched);
            layout.frame(dst.data(), dst_pitch, src.bytes.data(), src.pitch, width, height, bt709,
                         flip);
            for (int i = 0; i < height; ++i) {
              ExpectRow(dst, dst_pitch, flip ? height - 1 - i : i,
                        ReferenceRow(layout, src.Row(i), width, bt709));
            }
          }
        }
      }
    }
  });
}

TEST(YuyvFrame, NegativePitchesWalkUpwards) {
  const int width = 20, height = 4;
  const Source src(width, height, 0, 9);
  const int dst_pitch = 4 * width;
  std::vector<uint8_t> plain(static_cast<std::size_t>(dst_pitch) * height, kUntouched);
  QN_CS_YUYV2RGBA_Frame(plain.data(), dst_pitch, src.bytes.data(), src.pitch, width, height, 0, 0);
  // Source walked from its last row upwards and destination written from
  // its last row upwards: the same image as the plain call.
  std::vector<uint8_t> upwards(plain.size(), kUntouched);
  QN_CS_YUYV2RGBA_Frame(upwards.data() + dst_pitch * (height - 1), -dst_pitch, src.Row(height - 1),
                        -src.pitch, width, height, 0, 0);
  EXPECT_EQ(plain, upwards);
  // A negative destination pitch with flip set writes top-down again.
  std::vector<uint8_t> flipped(plain.size(), kUntouched);
  QN_CS_YUYV2RGBA_Frame(flipped.data() + dst_pitch * (height - 1), -dst_pitch, src.bytes.data(),
                        src.pitch, width, height, 0, 1);
  EXPECT_EQ(plain, flipped);
}

TEST(YuyvFrame, EmptySizesWriteNothing) {
  const Source src(8, 2, 0, 4);
  for (auto [width, height] : {std::pair{0, 2}, {8, 0}, {-2, 2}, {8, -1}}) {
    std::vector<uint8_t> dst(64, kUntouched);
    QN_CS_YUYV2BGRA_Compose(dst.data(), 32, src.bytes.data(), 16, src.Row(1), 16, width, height, 0,
                            0);
    EXPECT_EQ(QN_CS_YUYV2RGBA_Frame(dst.data(), 32, src.bytes.data(), 16, width, height, 0, 0), 1);
    EXPECT_EQ(dst, std::vector<uint8_t>(64, kUntouched)) << width << "x" << height;
  }
}

TEST(YuyvFrame, BgrWritesTheSameRgbBytesAsRgb) {
  // Y 255, V 255 at BT.601 is red-saturated: R 255, G 164, B 255 (see the
  // row test); a reversed order would show B first.
  const uint8_t red[8] = {255, 128, 255, 255, 255, 128, 255, 255};
  std::vector<uint8_t> rgb(12), bgr(12);
  QN_CS_YUYV2RGB_Frame(rgb.data(), 12, red, 8, 4, 1, 0, 0);
  QN_CS_YUYV2BGR_Frame(bgr.data(), 12, red, 8, 4, 1, 0, 0);
  EXPECT_EQ(rgb, bgr);
  const Source src(37, 5, 2, 21);
  for (int bt709 : {0, 1}) {
    std::vector<uint8_t> a(38 * 3 * 5), b(38 * 3 * 5);
    QN_CS_YUYV2RGB_Frame(a.data(), 38 * 3, src.bytes.data(), src.pitch, 37, 5, bt709, 1);
    QN_CS_YUYV2BGR_Frame(b.data(), 38 * 3, src.bytes.data(), src.pitch, 37, 5, bt709, 1);
    EXPECT_EQ(a, b);
  }
  rgb.resize(3);
  const uint8_t grey[4] = {100, 128, 100, 200};
  QN_CS_YUYV2BGR_Frame(rgb.data(), 6, grey, 4, 1, 1, 0, 0);
  EXPECT_EQ(rgb, (std::vector<uint8_t>{201, 49, 100})) << "R first, as the RGB form";
}

struct ComposeExport {
  const char* name;
  void(QBO_CALLEE* fn)(void*, int32_t, const void*, int32_t, const void*, int32_t, int32_t, int32_t,
                       int32_t, int32_t);
  YuyvToPixelsRowFn reference;
};

TEST(YuyvCompose, FieldsInterleaveAndOddHeightsEndInFieldZero) {
  const ComposeExport exports[] = {{"RGBA", QN_CS_YUYV2RGBA_Compose, YuyvToRgbaRow_C},
                                   {"BGRA", QN_CS_YUYV2BGRA_Compose, YuyvToBgraRow_C}};
  ForEachLevel([&](KernelLevel) {
    for (const ComposeExport& e : exports) {
      const Layout layout{e.name, nullptr, e.reference, 4};
      for (int height : {1, 2, 5, 6}) {
        for (int flip : {0, 1}) {
          SCOPED_TRACE(::testing::Message() << e.name << " height=" << height << " flip=" << flip);
          const int width = 23;
          // Field 1 holds one row fewer than field 0 when height is odd;
          // its buffer is sized exactly so an extra row would be noticed.
          const Source field0(width, (height + 1) / 2, 4, 31), field1(width, height / 2, 8, 32);
          const int dst_pitch = 4 * 24 + 12;
          std::vector<uint8_t> dst(static_cast<std::size_t>(dst_pitch) * height, kUntouched);
          e.fn(dst.data(), dst_pitch, field0.bytes.data(), field0.pitch, field1.bytes.data(),
               field1.pitch, width, height, 1, flip);
          for (int j = 0; j < height; ++j) {
            const Source& field = (j & 1) ? field1 : field0;
            ExpectRow(dst, dst_pitch, flip ? height - 1 - j : j,
                      ReferenceRow(layout, field.Row(j / 2), width, true));
          }
        }
      }
    }
  });
}

TEST(YuyvToBgraFrame, HandsTheWholeJobToVelaVidWithTheDocumentedArguments) {
  FakeVelaVid vela;
  vela.SetResult(0x5A5A);
  uint8_t src[64] = {};
  for (int bt709 : {0, 1, 7}) {
    for (int flip : {0, 1, -3}) {
      SCOPED_TRACE(::testing::Message() << "bt709=" << bt709 << " flip=" << flip);
      std::vector<uint8_t> dst(256, kUntouched);
      const int before = vela.call_count();
      EXPECT_EQ(QN_CS_YUYV2BGRA_Frame(dst.data(), -96, src, 40, 17, 3, bt709, flip), 0x5A5A);
      ASSERT_EQ(vela.call_count(), before + 1);
      const FakeVelaCall& call = vela.last_call();
      EXPECT_EQ(call.array, kFakeConvertArray);
      EXPECT_EQ(call.index, 21);
      ASSERT_EQ(call.argc, 11);
      const intptr_t expected[11] = {reinterpret_cast<intptr_t>(dst.data()),
                                     -96,
                                     reinterpret_cast<intptr_t>(src),
                                     40,
                                     17,
                                     3,
                                     bt709 == 0 ? 1 : 0,
                                     1,
                                     0,
                                     255,
                                     flip != 0 ? 1 : 0};
      for (int i = 0; i < 11; ++i) EXPECT_EQ(call.args[i], expected[i]) << "argument " << i;
      EXPECT_EQ(dst, std::vector<uint8_t>(256, kUntouched)) << "the library wrote nothing itself";
    }
  }
  // The RGBA frame and the Compose forms never dispatch.
  const int before = vela.call_count();
  std::vector<uint8_t> dst(64);
  QN_CS_YUYV2RGBA_Frame(dst.data(), 32, src, 16, 8, 2, 0, 0);
  QN_CS_YUYV2BGRA_Compose(dst.data(), 32, src, 16, src, 16, 8, 2, 0, 0);
  EXPECT_EQ(vela.call_count(), before);
}

TEST(YuyvToBgraFrame, RunsItsOwnPathWhenAnyLinkIsMissing) {
  const Source src(9, 2, 0, 77);
  std::vector<uint8_t> expected(40 * 2, kUntouched);
  QN_CS_YUYV2BGRA_Frame(expected.data(), 40, src.bytes.data(), src.pitch, 9, 2, 1, 1);
  const struct {
    const char* what;
    void (*cut)(FakeVelaVid&);
  } cuts[] = {
      {"no module", [](FakeVelaVid& v) { v.RemoveTable(); }},
      {"no convert array", [](FakeVelaVid& v) { v.SetArrayNull(kFakeConvertArray, true); }},
      {"no entry 21", [](FakeVelaVid& v) { v.SetEntryPresent(kFakeConvertArray, 21, false); }},
  };
  for (const auto& cut : cuts) {
    SCOPED_TRACE(cut.what);
    FakeVelaVid vela;
    vela.SetResult(0x77);
    cut.cut(vela);
    std::vector<uint8_t> dst(40 * 2, kUntouched);
    EXPECT_EQ(QN_CS_YUYV2BGRA_Frame(dst.data(), 40, src.bytes.data(), src.pitch, 9, 2, 1, 1), 1);
    EXPECT_EQ(vela.call_count(), 0);
    EXPECT_EQ(dst, expected);
  }
}

}  // namespace
}  // namespace qbo::test
