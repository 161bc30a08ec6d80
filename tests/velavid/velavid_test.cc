// The VelaVid module built with the library, loaded as the library loads
// it: its table, its conversions against the library's own paths (every
// band split, flips, odd sizes, many host threads at once), and
// ResampleFrame against a direct resampling of each plane.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "frame/platform.h"
#include "tests/support/direct_resample.h"

namespace qbo::test {
namespace {

using Word = intptr_t;
using Entry11 = Word (*)(Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word);
using Entry14 = Word (*)(Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word,
                         Word, Word);
using Entry8 = Word (*)(Word, Word, Word, Word, Word, Word, Word, Word);

struct Table {
  void* const* scale;
  void* const* convert;
};

const Table& Module() {
  static const Table* table = [] {
    const char* path = QBO_VELAVID_PATH;
    ModuleHandle module = NativePlatform().LoadModule(PathString(path, path + std::strlen(path)));
    auto get = reinterpret_cast<void* (*)()>(
        module ? NativePlatform().FindSymbol(module, "VLV_GetAPIStuPtr") : nullptr);
    return get ? static_cast<const Table*>(get()) : nullptr;
  }();
  if (!table) ADD_FAILURE() << "cannot load " << QBO_VELAVID_PATH;
  return *table;
}

template <typename Fn>
Fn ConvertEntry(int index) {
  return reinterpret_cast<Fn>(Module().convert[index]);
}
Word W(const void* p) { return reinterpret_cast<Word>(p); }

std::vector<uint8_t> Noise(std::size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> v(n);
  for (auto& b : v) b = static_cast<uint8_t>(rng());
  return v;
}

TEST(VelaVid, TableServesExactlyTheEntriesTheLibraryCalls) {
  for (int i = 0; i < 8; ++i) EXPECT_EQ(Module().scale[i] != nullptr, i == 7) << i;
  for (int i = 0; i < 74; ++i) {
    EXPECT_EQ(Module().convert[i] != nullptr, i == 16 || i == 21 || i == 73) << i;
  }
}

// Heights on both sides of the split limit (256 rows), a 576-line picture
// (its last line blackened), a single row, nothing; odd widths.
struct Size {
  int32_t width, height;
};
constexpr Size kSizes[] = {{7, 1},     {33, 255},  {31, 256}, {64, 300},
                           {719, 577}, {720, 576}, {2, 701},  {5, 0}};

// dst buffers are pitched wider than the rows and start filled, so a stray
// write into the padding shows as a difference.
TEST(VelaVid, ConversionsMatchTheOwnPaths) {
  for (const Size& s : kSizes) {
    for (int flip = 0; flip < 2; ++flip) {
      SCOPED_TRACE(testing::Message() << s.width << "x" << s.height << " flip " << flip);
      const int32_t rows = std::max(s.height, 1);
      // YUYV -> BGRA, both matrices.
      const int32_t yuyv_pitch = 2 * (s.width + 1) + 6, bgra_pitch = 4 * s.width + 12;
      const auto yuyv = Noise(static_cast<std::size_t>(yuyv_pitch) * rows, 1);
      for (int bt709 = 0; bt709 < 2; ++bt709) {
        std::vector<uint8_t> own(static_cast<std::size_t>(bgra_pitch) * rows, 0x5A), mod = own;
        QN_CS_YUYV2BGRA_Frame(own.data(), bgra_pitch, yuyv.data(), yuyv_pitch, s.width, s.height,
                              bt709, flip);
        EXPECT_EQ(ConvertEntry<Entry11>(21)(W(mod.data()), bgra_pitch, W(yuyv.data()), yuyv_pitch,
                                            s.width, s.height, bt709 == 0, 1, 0, 255, flip),
                  1);
        EXPECT_EQ(own, mod) << "YUYV to BGRA, bt709 " << bt709;
      }
      // 24-bit -> two 32-bit halves.
      const int32_t rgb_pitch = 3 * s.width + 5, half = (rows + 1) / 2;
      const auto rgb = Noise(static_cast<std::size_t>(rgb_pitch) * rows, 2);
      std::vector<uint8_t> own(2 * static_cast<std::size_t>(bgra_pitch) * half, 0x5A), mod = own;
      const std::size_t second = static_cast<std::size_t>(bgra_pitch) * half;
      QN_CS_24_to_32_Split(own.data(), bgra_pitch, own.data() + second, bgra_pitch, rgb.data(),
                           rgb_pitch, nullptr, 0, s.width, s.height, flip, 0);
      ConvertEntry<Entry11>(16)(W(mod.data()), bgra_pitch, W(mod.data() + second), bgra_pitch,
                                W(rgb.data()), rgb_pitch, s.width, s.height, 0, 255, flip);
      EXPECT_EQ(own, mod) << "24 to 32 split";
      if (flip) continue;
      // 4:2:0 -> two YUYV fields.
      const int32_t cw = (s.width + 1) / 2, ch = (rows + 1) / 2, fields = rows / 2 + 1;
      const auto y = Noise(static_cast<std::size_t>(s.width) * rows, 3);
      const auto u = Noise(static_cast<std::size_t>(cw) * ch, 4), v = Noise(u.size(), 5);
      std::vector<uint8_t> top(static_cast<std::size_t>(yuyv_pitch) * fields * 2, 0x5A);
      std::vector<uint8_t> top_mod = top;
      const std::size_t bottom = static_cast<std::size_t>(yuyv_pitch) * fields;
      QN_CS_420_422_YUVSplit(top.data(), yuyv_pitch, top.data() + bottom, yuyv_pitch, y.data(),
                             s.width, u.data(), cw, v.data(), cw, s.width, s.height);
      ConvertEntry<Entry14>(73)(W(top_mod.data()), yuyv_pitch, W(top_mod.data() + bottom),
                                yuyv_pitch, W(y.data()), s.width, W(u.data()), cw, W(v.data()), cw,
                                s.width, s.height, 0, 0);
      EXPECT_EQ(top, top_mod) << "4:2:0 split";
    }
  }
}

TEST(VelaVid, ManyHostThreadsAtOnceGetTheirOwnFrames) {
  constexpr int32_t kWidth = 96, kHeight = 400;
  const auto src = Noise(static_cast<std::size_t>(kWidth) * 2 * kHeight, 6);
  std::vector<uint8_t> expected(static_cast<std::size_t>(kWidth) * 4 * kHeight);
  QN_CS_YUYV2BGRA_Frame(expected.data(), kWidth * 4, src.data(), kWidth * 2, kWidth, kHeight, 1, 0);
  std::vector<std::thread> hosts;
  std::vector<int> mismatches(4, 0);
  for (int t = 0; t < 4; ++t) {
    hosts.emplace_back([&, t] {
      std::vector<uint8_t> out(expected.size());
      for (int i = 0; i < 25; ++i) {
        out.assign(out.size(), 0);
        ConvertEntry<Entry11>(21)(W(out.data()), kWidth * 4, W(src.data()), kWidth * 2, kWidth,
                                  kHeight, 0, 1, 0, 255, 0);
        mismatches[t] += out != expected;
      }
    });
  }
  for (auto& h : hosts) h.join();
  EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

// A frame, its descriptor as QN_ReSampling fills it (line distance of a
// field, field lines), and the call.
PackedFrame MakeFrame(int32_t width, int32_t lines, int32_t format, int32_t fields, unsigned seed) {
  const int bpp = format == 0 ? 32 : format == 3 ? 24 : 16;
  const int64_t line = (int64_t{width} * bpp / 8 + 3) & ~3;
  PackedFrame f{
      Noise(static_cast<std::size_t>(line * lines), seed), width, lines, format, fields, line};
  return f;
}

QN_FrameDescriptor Describe(PackedFrame& f, int aspect) {
  QN_FrameDescriptor d{};
  d.pixels = f.bytes.data();
  d.row_bytes = static_cast<intptr_t>(f.line_bytes * f.fields);
  d.width = f.width;
  d.height = f.lines / f.fields;
  d.bits_per_pixel = f.format == 0 ? 32 : f.format == 3 ? 24 : 16;
  d.format = f.format;
  d.field_count = f.fields;
  d.aspect_class = aspect;
  d.below_1080 = f.lines < 1080;
  return d;
}

Word Resample(const QN_FrameDescriptor& src, const QN_FrameDescriptor& dst) {
  return reinterpret_cast<Entry8>(Module().scale[7])(W(&src), W(&dst), 2, 1, 0, 0, 1, 1);
}

struct ResampleCase {
  const char* name;
  int32_t format, fields;
  Size src;
  int src_aspect;
  Size dst;
  int dst_aspect;
  PictureRect picture;  // worked by hand: 3/4 of the frame, centred
};
constexpr ResampleCase kResampleCases[] = {
    {"RGB32 up, same shape", 0, 1, {64, 48}, 1, {100, 75}, 1, {0, 0, 100, 75}},
    {"RGB24 down, same shape", 3, 1, {90, 60}, 0, {45, 31}, 0, {0, 0, 45, 31}},
    {"YUY2 SD interlaced into HD, pillarboxed",
     6,
     2,
     {720, 576},
     1,
     {1920, 1080},
     0,
     {240, 0, 1440, 540}},
    {"UYVY HD interlaced into SD, letterboxed",
     7,
     2,
     {1920, 1080},
     0,
     {720, 576},
     1,
     {0, 36, 720, 216}},
    {"RGB32 4:3 into 16:9, odd width pillar", 0, 1, {40, 30}, 1, {162, 90}, 0, {20, 0, 120, 90}},
};

TEST(VelaVid, ResampleFrameMatchesADirectResamplingOfEachPlane) {
  for (const ResampleCase& c : kResampleCases) {
    SCOPED_TRACE(c.name);
    PackedFrame src = MakeFrame(c.src.width, c.src.height, c.format, c.fields, 7);
    PackedFrame dst = MakeFrame(c.dst.width, c.dst.height, c.format, c.fields, 8);
    const PackedFrame expected = DirectResample(&QN_Re8Sampling, src, dst, c.picture);
    ASSERT_EQ(Resample(Describe(src, c.src_aspect), Describe(dst, c.dst_aspect)), 1);
    EXPECT_EQ(dst.bytes, expected.bytes);
  }
}

TEST(VelaVid, ResampleFrameRefusesWhatItCannotServeAndWritesNothing) {
  PackedFrame src = MakeFrame(64, 48, 0, 1, 11), dst = MakeFrame(32, 24, 0, 1, 12);
  const auto before = dst.bytes;
  using Edit = void (*)(QN_FrameDescriptor & s, QN_FrameDescriptor & d);
  const struct {
    const char* name;
    Edit edit;
  } kRefusals[] = {
      {"null pixels", [](auto& s, auto&) { s.pixels = nullptr; }},
      {"zero width", [](auto&, auto& d) { d.width = 0; }},
      {"zero height", [](auto& s, auto&) { s.height = 0; }},
      {"negative height", [](auto&, auto& d) { d.height = -24; }},
      {"lines too short", [](auto& s, auto&) { s.row_bytes = 63 * 4; }},
      {"planar YUV8", [](auto& s, auto& d) { s.format = d.format = 8; }},
      {"planar YUV6", [](auto& s, auto& d) { s.format = d.format = 9; }},
      {"formats differ", [](auto&, auto& d) { d.format = 3, d.bits_per_pixel = 24; }},
      {"depth not the format's", [](auto& s, auto&) { s.bits_per_pixel = 24; }},
      {"odd YUY2 width",
       [](auto& s, auto& d) {
         s.format = d.format = 6, s.bits_per_pixel = d.bits_per_pixel = 16, d.width = 31;
       }},
      {"field counts differ", [](auto& s, auto&) { s.field_count = 2, s.height = 24, s.row_bytes *= 2; }},
  };
  for (const auto& r : kRefusals) {
    QN_FrameDescriptor s = Describe(src, 1), d = Describe(dst, 1);
    r.edit(s, d);
    EXPECT_EQ(Resample(s, d), 0) << r.name;
    EXPECT_EQ(dst.bytes, before) << r.name;
  }
  EXPECT_EQ(reinterpret_cast<Entry8>(Module().scale[7])(0, W(&dst), 2, 1, 0, 0, 1, 1), 0);
}

}  // namespace
}  // namespace qbo::test
