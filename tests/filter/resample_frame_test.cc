// QN_ReSampling end to end through the fake VelaVid module: the frame
// descriptors built from the bitmap headers and the entry's arguments.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "frame/accel.h"
#include "tests/support/fake_vela_vid.h"

namespace qbo::test {
namespace {

using EntryFn = intptr_t (*)(intptr_t, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                             intptr_t, intptr_t);

// Copies the descriptors while they are alive (they live on the export's
// stack), then hands the call on to the fake's recorder.
QN_FrameDescriptor g_first, g_second;
EntryFn g_recorder;
intptr_t CaptureDescriptors(intptr_t a, intptr_t b, intptr_t c, intptr_t d, intptr_t e,
                            intptr_t f, intptr_t g, intptr_t h) {
  std::memcpy(&g_first, reinterpret_cast<const void*>(a), sizeof g_first);
  std::memcpy(&g_second, reinterpret_cast<const void*>(b), sizeof g_second);
  return g_recorder(a, b, c, d, e, f, g, h);
}

// Routes ScaleEntries[7] of the installed fake through CaptureDescriptors.
class CapturedResample {
 public:
  CapturedResample() {
    entries_ = const_cast<void**>(g_accel.vela_vid_api->ScaleEntries);
    g_recorder = reinterpret_cast<EntryFn>(entries_[kResampleFrameEntry]);
    entries_[kResampleFrameEntry] = reinterpret_cast<void*>(CaptureDescriptors);
  }
  ~CapturedResample() { entries_[kResampleFrameEntry] = reinterpret_cast<void*>(g_recorder); }

 private:
  void** entries_;
};

constexpr uint32_t Code(const char (&c)[5]) {
  return static_cast<uint32_t>(c[0]) | static_cast<uint32_t>(c[1]) << 8 |
         static_cast<uint32_t>(c[2]) << 16 | static_cast<uint32_t>(c[3]) << 24;
}

struct Header {
  int32_t width, height;
  uint16_t bpp;
  uint32_t compression;
  int32_t line, lines;
  std::array<uint8_t, 40> Bytes() const {
    std::array<uint8_t, 40> h{};
    const uint32_t size = 40;
    std::memcpy(&h[0], &size, 4);
    std::memcpy(&h[4], &width, 4);
    std::memcpy(&h[8], &height, 4);
    std::memcpy(&h[14], &bpp, 2);
    std::memcpy(&h[16], &compression, 4);
    std::memcpy(&h[24], &line, 4);
    std::memcpy(&h[28], &lines, 4);
    return h;
  }
};

struct Expect {
  intptr_t row_bytes, height, format, fields, aspect, below_1080;
};

struct FrameCase {
  const char* name;
  Header a, b;
  Expect ea, eb;
};

const FrameCase kCases[] = {
    // Both at least 480 high: two fields, rows twice as far apart, half the
    // lines. 720x480 is neither 4:3 nor 16:9 and below 1080: class 1.
    {"yuy2 sd to hd", {720, 480, 16, Code("YUY2"), 720, 480}, {1920, 1080, 16, 0, 1920, 1080},
     {720 * 2 * 2, 240, 6, 2, 1, 1}, {1920 * 2 * 2, 540, 6, 2, 0, 0}},
    // One frame below 480: one field. Line length 0 means the width.
    {"rgb24", {640, 480, 24, 0, 0, 0}, {320, 240, 24, 0, 0, 0},
     {640 * 3, 480, 3, 1, 1, 1}, {320 * 3, 240, 3, 1, 1, 1}},
    // 1440x1080 is 4:3 (class 1) though 1080 high; 1280x720 is 16:9.
    {"rgb32", {1440, 1080, 32, 0, 1440, 1080}, {1280, 720, 32, 0, 1280, 720},
     {1440 * 4 * 2, 540, 0, 2, 1, 0}, {1280 * 4 * 2, 360, 0, 2, 0, 1}},
    // The line length at byte 24 sets the row size, not the width.
    {"uyvy padded", {1920, 1080, 16, Code("UYVY"), 2048, 1088}, {1920, 1080, 16, 0, 2048, 0},
     {2048 * 2 * 2, 540, 7, 2, 0, 0}, {2048 * 2 * 2, 540, 7, 2, 0, 0}},
    // Planar: 486 lines round up to 488 before the field split.
    {"yuv8", {720, 486, 8, Code("YUV8"), 720, 486}, {720, 576, 8, 0, 720, 576},
     {720 * 2, 244, 8, 2, 1, 1}, {720 * 2, 288, 8, 2, 1, 1}},
    // 2048x1081: no known ratio, from 1080 up: class 0; rounded to 1084.
    {"yuv6", {2048, 1081, 8, Code("YUV6"), 2048, 0}, {400, 300, 8, 0, 400, 0},
     {2048, 1084, 9, 1, 0, 0}, {400, 300, 9, 1, 1, 1}},
};

void CheckDescriptor(const QN_FrameDescriptor& d, const Header& h, const Expect& e, void* pixels) {
  EXPECT_EQ(d.pixels, pixels);
  EXPECT_EQ(d.row_bytes, e.row_bytes);
  EXPECT_EQ(d.width, h.width);
  EXPECT_EQ(d.height, e.height);
  EXPECT_EQ(d.bits_per_pixel, h.bpp);
  EXPECT_EQ(d.format, e.format);
  EXPECT_EQ(d.field_count, e.fields);
  EXPECT_EQ(d.aspect_class, e.aspect);
  EXPECT_EQ(d.below_1080, e.below_1080);
  EXPECT_EQ(d.buffer_lines, h.lines);
  for (intptr_t r : d.reserved) EXPECT_EQ(r, 0);
}

TEST(ReSampling, DescribesBothFramesToTheModule) {
  static_assert(sizeof(QN_FrameDescriptor) == 16 * sizeof(intptr_t));
  FakeVelaVid fake;
  CapturedResample capture;
  uint8_t pixels_a[4], pixels_b[4];
  for (const FrameCase& c : kCases) {
    SCOPED_TRACE(c.name);
    const auto ha = c.a.Bytes(), hb = c.b.Bytes();
    fake.SetResult(1);
    EXPECT_EQ(QN_ReSampling(ha.data(), pixels_a, hb.data(), pixels_b), 1);
    const FakeVelaCall& call = fake.last_call();
    EXPECT_EQ(call.array, kFakeScaleArray);
    EXPECT_EQ(call.index, 7);
    ASSERT_EQ(call.argc, 8);
    EXPECT_EQ(std::vector<intptr_t>(call.args + 2, call.args + 8),
              (std::vector<intptr_t>{2, 1, 0, 0, 1, 1}));
    EXPECT_NE(call.args[0], call.args[1]);
    // The destination frame B goes first.
    CheckDescriptor(g_first, c.b, c.eb, pixels_b);
    CheckDescriptor(g_second, c.a, c.ea, pixels_a);
  }
}

TEST(ReSampling, ResultIsTheLowByteAsABoolean) {
  FakeVelaVid fake;
  const auto h = Header{720, 576, 16, Code("YUY2"), 720, 576}.Bytes();
  uint8_t px[4];
  for (auto [result, expected] : {std::pair<intptr_t, int32_t>{1, 1}, {0, 0}, {0x100, 0}, {0x1FE, 1}}) {
    fake.SetResult(result);
    EXPECT_EQ(QN_ReSampling(h.data(), px, h.data(), px), expected) << result;
  }
}

TEST(ReSampling, UnknownFormatOrMissingEntryCallsNothing) {
  FakeVelaVid fake;
  uint8_t px[4];
  const auto yuy2 = Header{720, 576, 16, Code("YUY2"), 720, 576}.Bytes();
  for (uint32_t code : {3u, Code("NV12"), Code("yuy2")}) {
    const auto h = Header{720, 576, 16, code, 720, 576}.Bytes();
    EXPECT_EQ(QN_ReSampling(h.data(), px, yuy2.data(), px), 0) << code;
  }
  EXPECT_EQ(fake.call_count(), 0);
  fake.SetEntryPresent(kFakeScaleArray, 7, false);
  EXPECT_EQ(QN_ReSampling(yuy2.data(), px, yuy2.data(), px), 0);
  fake.SetEntryPresent(kFakeScaleArray, 7, true);
  fake.SetArrayNull(kFakeScaleArray, true);
  EXPECT_EQ(QN_ReSampling(yuy2.data(), px, yuy2.data(), px), 0);
  fake.SetArrayNull(kFakeScaleArray, false);
  fake.RemoveTable();
  EXPECT_EQ(QN_ReSampling(yuy2.data(), px, yuy2.data(), px), 0);
  EXPECT_EQ(fake.call_count(), 0);
}

}  // namespace
}  // namespace qbo::test
