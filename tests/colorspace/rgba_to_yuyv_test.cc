// RGB to YUYV exports at every kernel level: row order, flips, negative
// pitches, splits with the odd-row copy, alpha planes, the width-chosen
// standard, and the pitch-derived group count of the 24-bit forms. The
// rows themselves are checked in rgba_to_yuyv_row_test.cc; here each
// destination row is compared with the reference row run on the source row
// it must come from, and every byte outside the written rows must keep its
// prefilled value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

using Bytes = std::vector<uint8_t>;

// A plane of `rows` rows of `pitch` bytes inside guards, prefilled with
// seeded random bytes so that copies of padding show.
struct Plane {
  Plane(int32_t pitch_in, int32_t rows, uint32_t seed)
      : pitch(pitch_in), buf(static_cast<std::size_t>(pitch_in) * rows, 8) {
    FillRandom(buf.data(), buf.size(), seed);
    before.assign(buf.data(), buf.data() + buf.size());
  }
  uint8_t* Row(int32_t k) { return buf.data() + static_cast<std::ptrdiff_t>(k) * pitch; }
  int32_t pitch;
  GuardedBuffer buf;
  Bytes before;
};

// Expected contents of a plane: the prefill with rows overwritten.
struct Expected {
  explicit Expected(const Plane& p) : pitch(p.pitch), bytes(p.before) {}
  uint8_t* Row(int32_t k) { return bytes.data() + static_cast<std::ptrdiff_t>(k) * pitch; }
  int32_t pitch;
  Bytes bytes;
};

void ExpectSame(const Expected& expected, const Plane& actual, std::size_t row_bytes) {
  ASSERT_EQ(MismatchMap(expected.bytes.data(), actual.buf.data(), row_bytes,
                        expected.bytes.size() / row_bytes),
            "");
  ASSERT_TRUE(actual.buf.GuardsIntact());
}

struct Source {
  Source(int32_t pitch_in, int32_t rows_in, uint32_t seed)
      : pitch(pitch_in),
        rows(rows_in),
        bytes(RandomBytes(static_cast<std::size_t>(pitch_in) * rows_in + 16, seed)) {}
  const uint8_t* Row(int32_t k) const {
    return bytes.data() + static_cast<std::ptrdiff_t>(k) * pitch;
  }
  int32_t pitch, rows;
  Bytes bytes;
};

// How a case hands the source over: top-down, flipped, or top-down through
// a negative pitch from the last row (which reads it bottom-up too).
enum class Order { kTopDown, kFlip, kNegativePitch };

struct Call {
  const void* src;
  int32_t pitch, flip;
};

Call Hand(const Source& s, Order order) {
  if (order == Order::kNegativePitch) return {s.Row(s.rows - 1), -s.pitch, 0};
  return {s.bytes.data(), s.pitch, order == Order::kFlip ? 1 : 0};
}

int32_t SourceRow(int32_t j, int32_t height, Order order) {
  return order == Order::kTopDown ? j : height - 1 - j;
}

const char* Name(Order order) {
  return order == Order::kTopDown ? "top-down" : order == Order::kFlip ? "flip" : "negative pitch";
}

std::size_t YuyvBytes(int32_t width) { return static_cast<std::size_t>((width + 1) / 2 * 4); }

// ---- 32-bit frames and splits -------------------------------------------

using FrameFn = int32_t (QBO_CALLEE*)(void*, int32_t, const void*, int32_t, int32_t, int32_t, int32_t,
                            int32_t);
using SplitFn = void (QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t, int32_t, int32_t,
                         int32_t, int32_t);
using AlphaFrameFn = void (QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t, int32_t,
                              int32_t, int32_t, int32_t);
using AlphaSplitFn = void (QBO_CALLEE*)(void*, int32_t, void*, int32_t, void*, int32_t, void*, int32_t,
                              const void*, int32_t, int32_t, int32_t, int32_t, int32_t);

struct Size {
  int32_t width, height;
};
const Size kSizes[] = {{1, 1}, {5, 5}, {6, 4}, {7, 3}, {37, 6}, {64, 5}};
const Order kOrders[] = {Order::kTopDown, Order::kFlip, Order::kNegativePitch};

template <class Body>
void ForEachCase(Body body) {
  ForEachLevel([&](KernelLevel) {
    uint32_t seed = 1;
    for (const Size& size : kSizes) {
      for (Order order : kOrders) {
        for (bool bgra : {false, true}) {
          for (int32_t bt709 : {0, 1}) {
            SCOPED_TRACE(::testing::Message() << size.width << "x" << size.height << " "
                                              << Name(order) << (bgra ? " BGRA" : " RGBA")
                                              << (bt709 ? " 709" : " 601") << " seed " << seed);
            body(size, order, bgra, bt709, seed++);
            if (::testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
  });
}

TEST(RgbaToYuyvFrame, EachRowFromItsSourceRow) {
  ForEachCase([](Size size, Order order, bool bgra, int32_t bt709, uint32_t seed) {
    const FrameFn fn = bgra ? QN_CS_BGRA2YUYV_Frame : QN_CS_RGBA2YUYV_Frame;
    const Source src(4 * size.width + 12, size.height, seed);
    Plane dst(static_cast<int32_t>(YuyvBytes(size.width)) + 6, size.height, seed + 1000);
    const Call call = Hand(src, order);
    EXPECT_EQ(
        fn(dst.Row(0), dst.pitch, call.src, call.pitch, size.width, size.height, bt709, call.flip),
        0);
    Expected expected(dst);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709 != 0);
    for (int32_t i = 0; i < size.height; ++i) {
      RgbaToYuyvRow_C(src.Row(SourceRow(i, size.height, order)), expected.Row(i), size.width,
                      &params);
    }
    ExpectSame(expected, dst, static_cast<std::size_t>(dst.pitch));
  });
}

// Field rows of a split: source row 2k to field 0 row k, 2k + 1 to field 1
// row k; an odd last row to field 0, then `copy` bytes of it into field 1.
template <class ConvertRow>
void ExpectSplit(int32_t height, Order order, Expected& f0, Expected& f1, std::size_t copy,
                 ConvertRow convert) {
  int32_t k = 0;
  for (; 2 * k + 1 < height; ++k) {
    convert(SourceRow(2 * k, height, order), f0.Row(k), k, 0);
    convert(SourceRow(2 * k + 1, height, order), f1.Row(k), k, 1);
  }
  if (height & 1) {
    convert(SourceRow(2 * k, height, order), f0.Row(k), k, 0);
    std::memcpy(f1.Row(k), f0.Row(k), copy);
  }
}

// Runs `split(f0, pitch0, f1, pitch1, src, pitch, flip)` and checks both
// fields against `row(src_row, out)` on the rows they must come from. The
// pitches differ so the odd-row copy must take the smaller one; which field
// is wider alternates with the seed.
template <class Split, class Row>
void ExpectYuyvSplit(Size size, Order order, const Source& src, uint32_t seed, Split split,
                     Row row) {
  const int32_t rows = (size.height + 1) / 2;
  const int32_t row_bytes = static_cast<int32_t>(YuyvBytes(size.width));
  const bool first_wider = seed & 1;
  Plane f0(row_bytes + (first_wider ? 20 : 4), rows, seed + 1000);
  Plane f1(row_bytes + (first_wider ? 4 : 20), rows, seed + 2000);
  const Call call = Hand(src, order);
  split(f0.Row(0), f0.pitch, f1.Row(0), f1.pitch, call.src, call.pitch, call.flip);
  Expected e0(f0), e1(f1);
  ExpectSplit(size.height, order, e0, e1, static_cast<std::size_t>(std::min(f0.pitch, f1.pitch)),
              [&](int32_t j, uint8_t* out, int32_t, int) { row(src.Row(j), out); });
  ExpectSame(e0, f0, static_cast<std::size_t>(f0.pitch));
  ExpectSame(e1, f1, static_cast<std::size_t>(f1.pitch));
}

TEST(RgbaToYuyvSplit, EvenRowsToTheFirstFieldOddRowsToTheSecond) {
  ForEachCase([](Size size, Order order, bool bgra, int32_t bt709, uint32_t seed) {
    const SplitFn fn = bgra ? QN_CS_BGRA2YUYV_Split : QN_CS_RGBA2YUYV_Split;
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709 != 0);
    ExpectYuyvSplit(
        size, order, Source(4 * size.width, size.height, seed), seed,
        [&](void* f0, int32_t p0, void* f1, int32_t p1, const void* src, int32_t pitch,
            int32_t flip) { fn(f0, p0, f1, p1, src, pitch, size.width, size.height, bt709, flip); },
        [&](const uint8_t* src, uint8_t* out) { RgbaToYuyvRow_C(src, out, size.width, &params); });
  });
}

TEST(RgbaToYuyvaFrame, WritesYuyvAndAlphaRows) {
  ForEachCase([](Size size, Order order, bool bgra, int32_t bt709, uint32_t seed) {
    const AlphaFrameFn fn = bgra ? QN_CS_BGRA2YUYVA_Frame : QN_CS_RGBA2YUYVA_Frame;
    const Source src(4 * size.width + 4, size.height, seed);
    Plane dst(static_cast<int32_t>(YuyvBytes(size.width)) + 2, size.height, seed + 1000);
    Plane alpha(size.width + 3, size.height, seed + 2000);
    const Call call = Hand(src, order);
    fn(dst.Row(0), dst.pitch, alpha.Row(0), alpha.pitch, call.src, call.pitch, size.width,
       size.height, bt709, call.flip);
    Expected e_dst(dst), e_alpha(alpha);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709 != 0);
    for (int32_t i = 0; i < size.height; ++i) {
      RgbaToYuyvAlphaRow_C(src.Row(SourceRow(i, size.height, order)), e_dst.Row(i), e_alpha.Row(i),
                           size.width, &params);
    }
    ExpectSame(e_dst, dst, static_cast<std::size_t>(dst.pitch));
    ExpectSame(e_alpha, alpha, static_cast<std::size_t>(alpha.pitch));
  });
}

TEST(RgbaToYuyvaSplit, FieldsWithTheirAlphaRows) {
  ForEachCase([](Size size, Order order, bool bgra, int32_t bt709, uint32_t seed) {
    const AlphaSplitFn fn = bgra ? QN_CS_BGRA2YUYVA_Split : QN_CS_RGBA2YUYVA_Split;
    const Source src(4 * size.width, size.height, seed);
    const int32_t rows = (size.height + 1) / 2;
    const int32_t row_bytes = static_cast<int32_t>(YuyvBytes(size.width));
    Plane f0(row_bytes + 8, rows, seed + 1000), f1(row_bytes, rows, seed + 2000);
    Plane a0(size.width + 1, rows, seed + 3000), a1(size.width + 9, rows, seed + 4000);
    const Call call = Hand(src, order);
    fn(f0.Row(0), f0.pitch, a0.Row(0), a0.pitch, f1.Row(0), f1.pitch, a1.Row(0), a1.pitch, call.src,
       call.pitch, size.width, size.height, bt709, call.flip);
    Expected e0(f0), e1(f1), ea0(a0), ea1(a1);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709 != 0);
    ExpectSplit(size.height, order, e0, e1, static_cast<std::size_t>(f1.pitch),
                [&](int32_t j, uint8_t* out, int32_t k, int field) {
                  RgbaToYuyvAlphaRow_C(src.Row(j), out, (field ? ea1 : ea0).Row(k), size.width,
                                       &params);
                });
    if (size.height & 1) {
      const int32_t k = rows - 1;
      std::memcpy(ea1.Row(k), ea0.Row(k), static_cast<std::size_t>(a0.pitch));
    }
    ExpectSame(e0, f0, static_cast<std::size_t>(f0.pitch));
    ExpectSame(e1, f1, static_cast<std::size_t>(f1.pitch));
    ExpectSame(ea0, a0, static_cast<std::size_t>(a0.pitch));
    ExpectSame(ea1, a1, static_cast<std::size_t>(a1.pitch));
  });
}

TEST(RgbaToYuyvaSplit, SecondNameRunsTheSameEntry) {
  const Source src(4 * 9, 5, 77);
  Plane f0(20, 3, 1), f1(20, 3, 2), a0(10, 3, 3), a1(10, 3, 4);
  Plane g0(20, 3, 1), g1(20, 3, 2), b0(10, 3, 3), b1(10, 3, 4);
  QN_CS_RGBA2YUYVA_Split(f0.Row(0), 20, a0.Row(0), 10, f1.Row(0), 20, a1.Row(0), 10,
                         src.bytes.data(), src.pitch, 9, 5, 1, 0);
  QNCS_RGBA2YUYVA_Split(g0.Row(0), 20, b0.Row(0), 10, g1.Row(0), 20, b1.Row(0), 10,
                        src.bytes.data(), src.pitch, 9, 5, 1, 0);
  EXPECT_EQ(std::memcmp(f0.buf.data(), g0.buf.data(), 60), 0);
  EXPECT_EQ(std::memcmp(f1.buf.data(), g1.buf.data(), 60), 0);
  EXPECT_EQ(std::memcmp(a0.buf.data(), b0.buf.data(), 30), 0);
  EXPECT_EQ(std::memcmp(a1.buf.data(), b1.buf.data(), 30), 0);
}

TEST(Rgb32ToYuv16AaFrame, WidthChoosesTheStandardAndByteFlagsCount) {
  struct Case {
    int32_t width, reserved, is_bgra, flip;
    bool expect_bgra, expect_709, expect_flip;
  };
  const Case cases[] = {
      {1439, 0, 0, 0, false, false, false},       {1440, 0, 0, 0, false, true, false},
      {1440, 1, 1, 1, true, true, true},          {1439, 7, 0x100, 0x100, false, false, false},
      {1441, 0, 0x1FF, 0x200, true, true, false},
  };
  constexpr int32_t kHeight = 3;
  ForEachLevel([&](KernelLevel) {
    for (const Case& c : cases) {
      SCOPED_TRACE(::testing::Message() << "width " << c.width << " reserved " << c.reserved
                                        << " isBgra " << c.is_bgra << " flip " << c.flip);
      const Source src(4 * c.width, kHeight, 5);
      const int32_t yuyv_pitch = static_cast<int32_t>(YuyvBytes(c.width));
      Plane dst(yuyv_pitch, kHeight, 6), alpha(c.width + 1, kHeight, 7);
      Plane ref(yuyv_pitch, kHeight, 6), ref_alpha(c.width + 1, kHeight, 7);
      QN_RGB32_2_YUV16_AA_Frame(dst.Row(0), dst.pitch, alpha.Row(0), alpha.pitch, src.bytes.data(),
                                src.pitch, c.width, kHeight, c.reserved, c.is_bgra, c.flip);
      const AlphaFrameFn fn = c.expect_bgra ? QN_CS_BGRA2YUYVA_Frame : QN_CS_RGBA2YUYVA_Frame;
      fn(ref.Row(0), ref.pitch, ref_alpha.Row(0), ref_alpha.pitch, src.bytes.data(), src.pitch,
         c.width, kHeight, c.expect_709, c.expect_flip);
      ASSERT_EQ(std::memcmp(dst.buf.data(), ref.buf.data(), dst.buf.size()), 0);
      ASSERT_EQ(std::memcmp(alpha.buf.data(), ref_alpha.buf.data(), alpha.buf.size()), 0);
    }
  });
}

TEST(RgbToYuyvExports, EmptySizesWriteNothing) {
  const Source src(64, 4, 9);
  const Size sizes[] = {{0, 4}, {-3, 4}, {8, 0}, {8, -1}};
  for (const Size& s : sizes) {
    SCOPED_TRACE(::testing::Message() << s.width << "x" << s.height);
    Plane d0(32, 4, 1), d1(32, 4, 2), a0(16, 4, 3), a1(16, 4, 4);
    QN_CS_RGBA2YUYV_Frame(d0.Row(0), 32, src.bytes.data(), 64, s.width, s.height, 0, 0);
    QN_CS_BGRA2YUYV_Split(d0.Row(0), 32, d1.Row(0), 32, src.bytes.data(), 64, s.width, s.height, 1,
                          1);
    QN_CS_BGRA2YUYVA_Split(d0.Row(0), 32, a0.Row(0), 16, d1.Row(0), 32, a1.Row(0), 16,
                           src.bytes.data(), 64, s.width, s.height, 0, 0);
    QN_RGB32_2_YUV16_AA_Frame(d0.Row(0), 32, a0.Row(0), 16, src.bytes.data(), 64, s.width, s.height,
                              0, 0, 0);
    QN_CS_RGB2YUYV_Frame(d0.Row(0), 32, src.bytes.data(), 48, s.width, s.height, 0, 0);
    QN_CS_BGR2YUYV_Split(d0.Row(0), 32, d1.Row(0), 32, src.bytes.data(), 48, s.width, s.height, 0,
                         1);
    for (Plane* p : {&d0, &d1, &a0, &a1}) {
      EXPECT_EQ(std::memcmp(p->buf.data(), p->before.data(), p->before.size()), 0);
      EXPECT_TRUE(p->buf.GuardsIntact());
    }
  }
}

// ---- 24-bit frames and splits ------------------------------------------

using Rgb24Fn = void (QBO_CALLEE*)(void*, int32_t, const void*, int32_t, int32_t, int32_t, int32_t, int32_t);
using Rgb24SplitFn = void (QBO_CALLEE*)(void*, int32_t, void*, int32_t, const void*, int32_t, int32_t,
                              int32_t, int32_t, int32_t);

TEST(Rgb24ToYuyvFrame, GroupCountComesFromThePitch) {
  struct Case {
    int32_t width, pitch, converted;
  };
  // g = (pitch - 4) / 12, r = width - 4g; bit 2 of r or r == 3 adds a
  // group, r == 2 a pair, r == 1 a single pixel.
  const Case cases[] = {
      {8, 24, 8},    // g 1, r 4: one more group
      {8, 48, 16},   // g 3, r -4 (bit 2 set): 16 pixels, the row's whole pitch
      {4, 40, 12},   // g 3, r -8 (bit 2 clear): nothing more
      {4, 100, 36},  // g 8, r -28 (bit 2 set): reads 8 bytes past the pitch
      {9, 27, 8},    // g 1, r 5: one group, the ninth pixel left unwritten
      {9, 28, 9},    // g 2, r 1: a single pixel
      {7, 21, 8},    // g 1, r 3: a whole group, 3 bytes past the last pixel
      {7, 24, 8},    // the same with a rounded pitch
      {6, 18, 6},    // g 1, r 2: a pair
      {5, 15, 4},    // g 0, r 5: the fifth pixel left unwritten
      {5, 16, 5},    // g 1, r 1
      {2, 6, 2},     // g 0, r 2
      {1, 3, 1},     // (3 - 4) / 12 rounds toward zero: g 0, r 1
      {16, 48, 16},
  };
  constexpr int32_t kHeight = 3;
  ForEachLevel([&](KernelLevel) {
    uint32_t seed = 500;
    for (const Case& c : cases) {
      for (Order order : kOrders) {
        for (bool bgr : {false, true}) {
          SCOPED_TRACE(::testing::Message()
                       << "width " << c.width << " pitch " << c.pitch << " " << Name(order)
                       << (bgr ? " BGR" : " RGB") << " seed " << seed);
          const Rgb24Fn fn = bgr ? QN_CS_BGR2YUYV_Frame : QN_CS_RGB2YUYV_Frame;
          const Source src(c.pitch, kHeight, seed++);
          Plane dst(static_cast<int32_t>(YuyvBytes(c.converted)) + 4, kHeight, seed++);
          const Call call = Hand(src, order);
          fn(dst.Row(0), dst.pitch, call.src, call.pitch, c.width, kHeight, bgr ? 0 : 1, call.flip);
          Expected expected(dst);
          const RgbToYuyvParams params = SelectRgbToYuyvParams(bgr, !bgr);
          for (int32_t i = 0; i < kHeight; ++i) {
            Rgb24ToYuyvRow_C(src.Row(SourceRow(i, kHeight, order)), expected.Row(i), c.converted,
                             &params);
          }
          ExpectSame(expected, dst, static_cast<std::size_t>(dst.pitch));
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  });
}

TEST(Rgb24ToYuyvSplit, EvenRowsToTheFirstFieldOddRowsToTheSecond) {
  ForEachCase([](Size size, Order order, bool bgr, int32_t bt709, uint32_t seed) {
    const Rgb24SplitFn fn = bgr ? QN_CS_BGR2YUYV_Split : QN_CS_RGB2YUYV_Split;
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgr, bt709 != 0);
    // With the pitch rounded up to a multiple of 4, every pixel converts.
    ExpectYuyvSplit(
        size, order, Source((3 * size.width + 3) & ~3, size.height, seed), seed,
        [&](void* f0, int32_t p0, void* f1, int32_t p1, const void* src, int32_t pitch,
            int32_t flip) { fn(f0, p0, f1, p1, src, pitch, size.width, size.height, bt709, flip); },
        [&](const uint8_t* src, uint8_t* out) { Rgb24ToYuyvRow_C(src, out, size.width, &params); });
  });
}

}  // namespace
}  // namespace qbo::test
