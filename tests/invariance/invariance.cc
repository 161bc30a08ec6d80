// Build invariance: drives every export through the C interface over a
// seeded set of calls and prints one digest per export (its results and
// every byte of every buffer it was given, sources included). Two builds,
// or two QBO_CPU levels, that print different digests for an export give
// different bytes for some call: rerun with `--trace NAME` to print one
// digest per call and find the first that differs.
//
//   invariance [--calls N] [--seed S] [--trace NAME]
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "QuillonBufferOperaU.h"

namespace {

// splitmix64: the same stream on every compiler and word size.
class Rng {
 public:
  explicit Rng(uint64_t seed) : s_(seed) {}
  uint64_t Next() {
    uint64_t z = (s_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  // Uniform in lo..hi inclusive.
  int32_t In(int32_t lo, int32_t hi) {
    return lo + static_cast<int32_t>(Next() % static_cast<uint64_t>(int64_t{hi} - lo + 1));
  }
  bool OneIn(int n) { return Next() % static_cast<uint64_t>(n) == 0; }
  template <typename T, std::size_t N>
  T Pick(const T (&values)[N]) {
    return values[Next() % N];
  }
  void Fill(std::vector<uint8_t>* bytes) {
    // Flat stretches among noise, so that filters meet both.
    uint8_t flat = 0;
    for (std::size_t i = 0; i < bytes->size(); ++i) {
      if (i % 64 == 0) flat = OneIn(3) ? static_cast<uint8_t>(Pick<int, 5>({0, 16, 128, 235, 255})) : 0;
      (*bytes)[i] = flat ? flat : static_cast<uint8_t>(Next() >> 24);
    }
  }

 private:
  uint64_t s_;
};

// FNV-1a over bytes and results.
struct Digest {
  uint64_t h = 0xCBF29CE484222325ull;
  void Bytes(const void* p, std::size_t n) {
    const auto* b = static_cast<const uint8_t*>(p);
    for (std::size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 0x100000001B3ull;
  }
  void Value(int64_t v) {
    uint8_t b[8];
    for (int i = 0; i < 8; ++i) b[i] = static_cast<uint8_t>(static_cast<uint64_t>(v) >> (8 * i));
    Bytes(b, 8);
  }
};

// Every buffer a call gets is registered here, filled with seeded bytes,
// and digested whole after the call.
class Call {
 public:
  explicit Call(Rng* rng) : rng_(rng) {}
  uint8_t* Buffer(std::size_t bytes) {
    buffers_.emplace_back(bytes + 16);
    rng_->Fill(&buffers_.back());
    return buffers_.back().data() + rng_->In(0, 3);  // any alignment
  }
  // A plane of `rows` rows of at least `row_bytes`, for the exports that
  // check nothing: rows far longer than any row they write (some write or
  // read a little past a row by design) and spare rows both ways. `*pitch`
  // gets the signed pitch; a quarter of the planes are walked upwards.
  uint8_t* Plane(int32_t row_bytes, int32_t rows, int32_t* pitch) {
    const int32_t stride = row_bytes + 32 + 4 * rng_->In(0, 4) + rng_->In(0, 1) * 2;
    const int32_t total = rows + 4;
    uint8_t* base = Buffer(static_cast<std::size_t>(stride) * (total + 1));
    if (rng_->OneIn(4)) {
      *pitch = -stride;
      return base + static_cast<std::size_t>(stride) * (total - 2);
    }
    *pitch = stride;
    return base + 2 * static_cast<std::size_t>(stride);
  }
  void Finish(Digest* d, int64_t result) {
    d->Value(result);
    for (const auto& b : buffers_) d->Bytes(b.data(), b.size());
  }

 private:
  Rng* rng_;
  std::vector<std::vector<uint8_t>> buffers_;
};

// Pointers come back as where they point, never as addresses.
int64_t Where(const void* result, const void* base) {
  return result == nullptr ? 0 : result == base ? 1 : 2;
}

// Scale pairs whose quotients sit on single-precision rounding edges, or
// hit exact ones, beside random sizes.
struct ScalePair {
  int32_t src, dst;
};
const ScalePair kEdgeScales[] = {{31, 9}, {693, 555}, {555, 693}, {9, 31}, {3, 1},
                                 {1, 3},  {10, 3},    {7, 7},     {1, 1},  {100, 3}};

struct Rect {
  int32_t dst_x, dst_y, width, height, dst_width, dst_height;
  int32_t src_x, src_y, src_rect_width, src_rect_height, src_width, src_height;
};

// Rectangles that overhang every side, sometimes far, with sizes from the
// edge list a third of the time.
Rect RandomRect(Rng& r, int32_t most) {
  Rect a{};
  a.dst_width = r.In(1, most);
  a.dst_height = r.In(1, most);
  a.src_width = r.In(1, most);
  a.src_height = r.In(1, most);
  auto size = [&](int32_t buffer) { return r.OneIn(20) ? r.In(-2, 0) : r.In(1, 2 * buffer + 2); };
  a.width = size(a.dst_width);
  a.height = size(a.dst_height);
  a.src_rect_width = size(a.src_width);
  a.src_rect_height = size(a.src_height);
  if (r.OneIn(3)) {
    const ScalePair s = r.Pick(kEdgeScales);
    a.src_rect_width = s.src;
    a.width = s.dst;
  }
  if (r.OneIn(3)) {
    const ScalePair s = r.Pick(kEdgeScales);
    a.src_rect_height = s.src;
    a.height = s.dst;
  }
  auto start = [&](int32_t buffer, int32_t len) {
    return r.OneIn(4) ? r.In(-len - 2, 0) : r.In(-buffer / 2 - 1, buffer);
  };
  a.dst_x = start(a.dst_width, a.width);
  a.dst_y = start(a.dst_height, a.height);
  a.src_x = start(a.src_width, a.src_rect_width);
  a.src_y = start(a.src_height, a.src_rect_height);
  return a;
}

std::size_t Area(int32_t w, int32_t h) {
  return static_cast<std::size_t>(w > 0 ? w : 0) * static_cast<std::size_t>(h > 0 ? h : 0);
}

using Body = std::function<int64_t(Rng&, Call&)>;

struct Export {
  const char* name;
  Body body;
};

using Transfer16 = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                        int32_t, const void*, int32_t, int32_t, int32_t, int32_t,
                                        int32_t, int32_t, int32_t, int32_t);
using YuyvMean = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                      int32_t, int32_t, const void*, int32_t, int32_t, int32_t,
                                      int32_t, int32_t, int32_t, int32_t, int32_t, int32_t);

// The 16-argument transfers: modes and fields, unknown ones included. A
// field selection may touch the row below a rectangle, so every buffer
// has a spare row.
Body TransferBody(Transfer16 fn) {
  return [fn](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    uint8_t* dst = c.Buffer(Area(a.dst_width, a.dst_height + 1) * 4);
    const uint8_t* src = c.Buffer(Area(a.src_width, a.src_height + 1) * 4);
    const int32_t mode = r.OneIn(16) ? r.Pick<int32_t, 3>({-1, 3, 7}) : r.In(0, 2);
    const int32_t field = r.OneIn(16) ? 3 : r.In(0, 2);
    return fn(dst, a.dst_x, a.dst_y, a.width, a.height, a.dst_width, a.dst_height, src, a.src_x,
              a.src_y, a.src_rect_width, a.src_rect_height, a.src_width, a.src_height, mode,
              field);
  };
}

// The 14-argument rectangle exports over 32-bit pixels.
template <typename Fn>
Body RectBody(Fn fn) {
  return [fn](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    uint8_t* dst = c.Buffer(Area(a.dst_width, a.dst_height) * 4);
    const uint8_t* src = c.Buffer(Area(a.src_width, a.src_height) * 4);
    return fn(dst, a.dst_x, a.dst_y, a.width, a.height, a.dst_width, a.dst_height, src, a.src_x,
              a.src_y, a.src_rect_width, a.src_rect_height, a.src_width, a.src_height);
  };
}

// Whole-image exports: dst, dstWidth, dstHeight, src, srcWidth, srcHeight,
// of `bpp` bytes a sample. Sizes of 0 and below appear now and then.
template <typename Fn>
Body WholeBody(Fn fn, int bpp) {
  return [fn, bpp](Rng& r, Call& c) -> int64_t {
    int32_t size[4];
    for (int32_t& s : size) s = r.OneIn(25) ? r.In(-3, 0) : r.In(1, 48);
    if (r.OneIn(3)) {
      const ScalePair e = r.Pick(kEdgeScales);
      size[2] = e.src % 48 + 1;
      size[0] = e.dst % 48 + 1;
    }
    uint8_t* dst = c.Buffer(Area(size[0], size[1]) * bpp);
    const uint8_t* src = c.Buffer(Area(size[2], size[3]) * bpp);
    return fn(dst, size[0], size[1], src, size[2], size[3]);
  };
}

Body YuyvMeanBody(YuyvMean fn) {
  return [fn](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    const int32_t dst_row = a.dst_width * 4, src_row = (a.src_width + 1) / 2 * 4;
    const int32_t dst_pitch = dst_row + r.In(0, 8), src_pitch = src_row + r.In(0, 8);
    const bool dst_up = r.OneIn(4), src_up = r.OneIn(4);
    uint8_t* dst = c.Buffer(static_cast<std::size_t>(dst_pitch) * a.dst_height);
    uint8_t* src = c.Buffer(static_cast<std::size_t>(src_pitch) * a.src_height);
    if (dst_up) dst += static_cast<std::size_t>(dst_pitch) * (a.dst_height - 1);
    if (src_up) src += static_cast<std::size_t>(src_pitch) * (a.src_height - 1);
    const int32_t matrix = r.In(0, 2), flip = r.In(0, 1);
    return fn(dst, dst_up ? -dst_pitch : dst_pitch, a.dst_x, a.dst_y, a.width, a.height,
              a.dst_width, a.dst_height, src, src_up ? -src_pitch : src_pitch, a.src_x, a.src_y,
              a.src_rect_width, a.src_rect_height, a.src_width, a.src_height, matrix, flip);
  };
}

// Picture sizes for the layout and colour-space exports: mostly small and
// odd, sometimes empty, sometimes the 576-line picture that has its own
// rule.
void PictureSize(Rng& r, int32_t* w, int32_t* h) {
  *w = r.OneIn(20) ? r.In(-2, 0) : r.In(1, 40);
  *h = r.OneIn(20) ? r.In(-2, 0) : r.In(1, 24);
  if (r.OneIn(30)) {
    *w = r.In(1, 12);
    *h = 576;
  }
}

// Exports over planes: `planes` plane slots, each given a pointer and a
// pitch by the body.
struct Planes {
  uint8_t* p[8];
  int32_t pitch[8];
};
Planes MakePlanes(Call& c, int n, int32_t w, int32_t h) {
  Planes s{};
  const int32_t row = 4 * (w > 0 ? w : 1) + 8;
  for (int i = 0; i < n; ++i) s.p[i] = c.Plane(row, h > 0 ? h : 1, &s.pitch[i]);
  return s;
}

// The flags the picture exports take, drawn before any call so that no
// argument list holds two draws (their order would be the compiler's).
struct Flags {
  int32_t bt709, flip, flip2, bpp;
  bool no_alpha;
};
Flags DrawFlags(Rng& r) {
  Flags f{};
  f.bt709 = r.In(0, 2);
  f.flip = r.In(0, 1);
  f.flip2 = r.In(0, 1);
  f.bpp = r.In(1, 4);
  f.no_alpha = r.OneIn(3);
  return f;
}

#define QBO_PLANES(n)       \
  int32_t w, h;             \
  PictureSize(r, &w, &h);   \
  [[maybe_unused]] const Flags f = DrawFlags(r); \
  const Planes s = MakePlanes(c, n, w, h)

// The exports whose arguments are planes (pointer, pitch) then the
// picture size and a tail of flags: `N` planes, and the flags as `kTail`
// names them. The planes and flags are drawn before the call, as above.
enum class Tail { kSize, kBpp, kFlip, kMatrixFlip };
template <std::size_t N, Tail kTail, typename Fn>
Body PlanesBody(Fn fn) {
  return [fn](Rng& r, Call& c) -> int64_t {
    QBO_PLANES(N);
    const auto planes = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return std::tuple_cat(std::make_tuple(s.p[I], s.pitch[I])...);
    }(std::make_index_sequence<N>{});
    const auto tail = [&] {
      if constexpr (kTail == Tail::kSize) return std::make_tuple(w, h);
      if constexpr (kTail == Tail::kBpp) return std::make_tuple(w, h, f.bpp);
      if constexpr (kTail == Tail::kFlip) return std::make_tuple(w, h, f.flip);
      if constexpr (kTail == Tail::kMatrixFlip) return std::make_tuple(w, h, f.bt709, f.flip);
    }();
    const auto args = std::tuple_cat(planes, tail);
    if constexpr (std::is_void_v<decltype(std::apply(fn, args))>) {
      std::apply(fn, args);
      return 0;
    } else {
      return std::apply(fn, args);
    }
  };
}
#define QBO_PLANES_EXPORT(n, tail, fn) add(#fn, PlanesBody<n, Tail::tail>(fn))

std::vector<Export> Exports() {
  std::vector<Export> e;
  auto add = [&](const char* name, Body b) { e.push_back({name, std::move(b)}); };

  // Fills, copies, flips.
  add("QN_MemsetDWORD", [](Rng& r, Call& c) -> int64_t {
    const int32_t n = r.In(0, 300);
    const auto value = static_cast<uint32_t>(r.Next());
    return QN_MemsetDWORD(c.Buffer(Area(n, 1) * 4), value, n);
  });
  add("QN_Memcpy", [](Rng& r, Call& c) -> int64_t {
    const int32_t n = r.In(0, 3000);
    uint8_t* dst = c.Buffer(Area(n, 1));
    return Where(QN_Memcpy(dst, c.Buffer(Area(n, 1)), n), dst);
  });
  add("QN_Clear", [](Rng& r, Call& c) -> int64_t {
    const int32_t left = r.In(0, 20), width = r.In(-1, 20);
    const int32_t top = r.In(0, 20), bottom = r.In(0, 20);
    const int32_t pitch = 4 * (left + 21) + 4 * r.In(0, 2);
    uint8_t* dst = c.Buffer(static_cast<std::size_t>(pitch) * 21);
    return Where(QN_Clear(dst, pitch, left, top, width, bottom, static_cast<uint32_t>(r.Next())),
                 dst);
  });
  add("QN_AlphaMemSet", [](Rng& r, Call& c) -> int64_t {
    const int32_t w = r.In(0, 40), h = r.In(0, 20);
    uint8_t* dst = c.Buffer(Area(w, h) * 4);
    return Where(QN_AlphaMemSet(dst, r.In(-300, 300), w, h), dst);
  });
  add("QN_OverTurnSelf", [](Rng& r, Call& c) -> int64_t {
    const int32_t pitch = r.OneIn(20) ? -4 : r.In(0, 160), h = r.OneIn(20) ? -1 : r.In(0, 30);
    return QN_OverTurnSelf(c.Buffer(Area(pitch, h)), pitch, h);
  });
  add("QN_CalMask", [](Rng& r, Call&) -> int64_t {
    QN_CalMask(r.In(-9, 9), 1, 2, 3, 4, 5, 6, 7, 8, 9);
    return 0;
  });
  add("QN_ColorMixLine",
      [](Rng& r, Call&) -> int64_t {
        const int32_t a = r.In(-9, 9), b = r.In(-9, 9);
        return QN_ColorMixLine(a, b, 0);
      });

  // Masks.
  add("QN_FillMaskColor", [](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    uint8_t* dst = c.Buffer(Area(a.dst_width, a.dst_height) * 4);
    const uint8_t* mask = c.Buffer(Area(a.src_width, a.src_height));
    return QN_FillMaskColor(dst, a.dst_x, a.dst_y, a.dst_width, a.dst_height, mask, a.src_x,
                            a.src_y, a.src_width, a.src_height);
  });
  add("QN_MixMask", [](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    uint8_t* dst = c.Buffer(Area(a.dst_width, a.dst_height));
    const uint8_t* src = c.Buffer(Area(a.src_width, a.src_height));
    return QN_MixMask(dst, a.dst_x, a.dst_y, a.width, a.height, a.dst_width, a.dst_height, src,
                      a.src_x, a.src_y, 7, 9, a.src_width, a.src_height);
  });
  add("QN_SubMask", [](Rng& r, Call& c) -> int64_t {
    const Rect a = RandomRect(r, 40);
    uint8_t* dst = c.Buffer(Area(a.dst_width, a.dst_height));
    const uint8_t* src = c.Buffer(Area(a.src_width, a.src_height));
    return QN_SubMask(dst, a.dst_x, a.dst_y, a.dst_width, a.dst_height, src, a.src_x, a.src_y,
                      a.src_width, a.src_height, a.width, a.height, 5);
  });

  // Transfers, stretches, zooms, YUYV mean stretches.
  add("QN_BitBlt", TransferBody(QN_BitBlt));
  add("QN_StretchBlt", TransferBody(QN_StretchBlt));
  add("QN_StretchBlt_Mean", TransferBody(QN_StretchBlt_Mean));
  add("QN_CS_YUYV2BGRA_MeanStretch", YuyvMeanBody(QN_CS_YUYV2BGRA_MeanStretch));
  add("QN_CS_YUYV2RGBA_MeanStretch", YuyvMeanBody(QN_CS_YUYV2RGBA_MeanStretch));
  add("QN_BufferZoom", WholeBody(QN_BufferZoom, 1));
  add("QN_DwordBufferZoom", RectBody(QN_DwordBufferZoom));

  // Resampling, blur, split, mixing.
  add("QN_Re4Sampling", WholeBody(QN_Re4Sampling, 4));
  add("QN_Re8Sampling", WholeBody(QN_Re8Sampling, 4));
  add("QN_Re4SamplingEx", RectBody(QN_Re4SamplingEx));
  add("QN_Re8SamplingEx", RectBody(QN_Re8SamplingEx));
  add("QN_ReSampling", [](Rng& r, Call& c) -> int64_t {
    // No acceleration module beside the program: the export refuses.
    uint8_t header[40] = {};
    header[4] = 16;
    header[8] = 16;
    header[14] = 32;
    header[16] = static_cast<uint8_t>(r.In(0, 1));
    uint8_t* a = c.Buffer(1024);
    uint8_t* b = c.Buffer(1024);
    return QN_ReSampling(header, a, header, b);
  });
  add("QN_VerticalBlur", [](Rng& r, Call& c) -> int64_t {
    const int32_t w = r.In(-1, 40), h = r.In(-1, 30);
    const int32_t weights[3] = {r.In(-4, 16), r.In(-4, 64), r.In(-4, 16)};
    uint8_t* buffer = c.Buffer(Area(w, h) * 4);
    return Where(QN_VerticalBlur(buffer, w, h, weights), buffer);
  });
  add("QN_CS_YUYVSplit", [](Rng& r, Call& c) -> int64_t {
    const int32_t n = r.In(-2, 300);
    uint8_t* y = c.Buffer(Area(n, 1));
    uint8_t* u = c.Buffer(Area(n, 1));
    uint8_t* v = c.Buffer(Area(n, 1));
    return QN_CS_YUYVSplit(y, u, v, c.Buffer(Area(n, 2)), n);
  });
  add("QN_Yuyv_Alpha_Mixin", [](Rng& r, Call& c) -> int64_t {
    const int32_t dw = r.In(1, 40), dh = r.In(1, 24);
    const int32_t x = r.In(-2, 41), y = r.In(-2, 25), w = r.In(-1, 42), h = r.In(-1, 26);
    const bool da = !r.OneIn(3), sa = !r.OneIn(3);
    uint8_t* dst = c.Buffer(Area(dw, dh) * 2);
    uint8_t* dst_alpha = da ? c.Buffer(Area(dw, dh)) : nullptr;
    // The overlay is read from its first pixel with the clipped size.
    uint8_t* src = c.Buffer(Area(dw, dh) * 2);
    uint8_t* src_alpha = sa ? c.Buffer(Area(dw, dh)) : nullptr;
    return QN_Yuyv_Alpha_Mixin(dst, 2 * dw, dst_alpha, dw, dw, dh, src, 2 * dw, src_alpha, dw, 0,
                               0, x, y, w, h);
  });

  // Field and frame layouts; 4:2:2 to 4:2:0 has the shape of the compose.
  QBO_PLANES_EXPORT(3, kBpp, QN_CS_ComposeFields);
  QBO_PLANES_EXPORT(3, kBpp, QN_CS_SplitFrame);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_ComposeYUV422_Frame);
  QBO_PLANES_EXPORT(5, kSize, QN_CS_ComposeYUV422_Split);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_420_422_YUVFrame);
  QBO_PLANES_EXPORT(5, kSize, QN_CS_420_422_YUVSplit);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_420_422_YUVFrame_XDCAM);
  QBO_PLANES_EXPORT(5, kSize, QN_CS_420_422_YUVSplit_XDCAM);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_422_420_YUVField);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_422_420_YUVFrame);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_422_420_YUVField_4);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_422_420_YUVFrame_4);
  QBO_PLANES_EXPORT(4, kSize, QN_CS_422_420_YUVFrame_XDCAM);
  QBO_PLANES_EXPORT(4, kFlip, QN_CS_422_420_YUVField_XDCAM);

  // Planar YUV to 32-bit.
  QBO_PLANES_EXPORT(4, kMatrixFlip, QN_CS_YUV422_RGBA_Frame);
  QBO_PLANES_EXPORT(4, kMatrixFlip, QN_CS_YUV422_BGRA_Frame);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_YUV422_RGBA_Split);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_YUV422_BGRA_Split);
  QBO_PLANES_EXPORT(4, kMatrixFlip, QN_CS_YUV420_RGBA_Frame);
  QBO_PLANES_EXPORT(4, kMatrixFlip, QN_CS_YUV420_BGRA_Frame);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_YUV420_RGBA_Split);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_YUV420_BGRA_Split);
  // Matrices: every standard, row and column, valid or not.
  auto matrix = [](const float* (QBO_CALLEE * get)(int32_t),
                   float(QBO_CALLEE * cell)(int32_t, int32_t, int32_t)) -> Body {
    return [get, cell](Rng& r, Call& c) -> int64_t {
      const int32_t standard = r.In(-1, 3);
      float values[17] = {};
      if (const float* m = get(standard)) std::memcpy(values, m, 16 * sizeof(float));
      const int32_t row = r.In(-1, 4), column = r.In(-1, 4);
      values[16] = cell(row, column, standard);
      std::memcpy(c.Buffer(sizeof values), values, sizeof values);
      return get(standard) == get(standard);
    };
  };
  add("QN_CS_GetMatYUVA2RGBA", matrix(QN_CS_GetMatYUVA2RGBA, QN_CS_GetMatYUVA2RGBA_Cell));
  add("QN_CS_GetMatRGBA2YUVA", matrix(QN_CS_GetMatRGBA2YUVA, QN_CS_GetMatRGBA2YUVA_Cell));
  add("QN_CS_GetMatYUVA2RGBA_Cell", matrix(QN_CS_GetMatYUVA2RGBA, QN_CS_GetMatYUVA2RGBA_Cell));
  add("QN_CS_GetMatRGBA2YUVA_Cell", matrix(QN_CS_GetMatRGBA2YUVA, QN_CS_GetMatRGBA2YUVA_Cell));
  add("QN_CS_GetMatLUVA2RGBA", [](Rng&, Call& c) -> int64_t {
    std::memcpy(c.Buffer(16 * sizeof(float)), QN_CS_GetMatLUVA2RGBA(), 16 * sizeof(float));
    return 0;
  });


  // YUYV to 32-bit and 24-bit.
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_YUYV2RGBA_Frame);
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_YUYV2BGRA_Frame);
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_YUYV2RGB_Frame);
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_YUYV2BGR_Frame);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_YUYV2RGBA_Compose);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_YUYV2BGRA_Compose);

  // 24-bit to 32-bit, with and without an alpha plane.
  using To32Frame = void(QBO_CALLEE*)(void*, int32_t, const void*, int32_t, const void*, int32_t,
                                      int32_t, int32_t, int32_t, int32_t);
  auto to32_frame = [](To32Frame fn) -> Body {
    return [fn](Rng& r, Call& c) -> int64_t {
      QBO_PLANES(3);
      fn(s.p[0], s.pitch[0], s.p[1], s.pitch[1], f.no_alpha ? nullptr : s.p[2], s.pitch[2], w, h,
         f.flip, f.flip2);
      return 0;
    };
  };
  add("QN_CS_24_to_32_Frame", to32_frame(QN_CS_24_to_32_Frame));
  add("ZQCS_24_to_32_Frame", to32_frame(ZQCS_24_to_32_Frame));
  add("QN_CS_24_to_32_Split", [](Rng& r, Call& c) -> int64_t {
    QBO_PLANES(4);
    QN_CS_24_to_32_Split(s.p[0], s.pitch[0], s.p[1], s.pitch[1], s.p[2], s.pitch[2],
                         f.no_alpha ? nullptr : s.p[3], s.pitch[3], w, h, f.flip, f.flip2);
    return 0;
  });

  // 32-bit and 24-bit to YUYV. The 24-bit forms count their groups from the
  // source pitch; the planes' generous rows hold what that reaches.
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_RGBA2YUYV_Frame);
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_BGRA2YUYV_Frame);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_RGBA2YUYV_Split);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_BGRA2YUYV_Split);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_RGBA2YUYVA_Frame);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_BGRA2YUYVA_Frame);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_RGBA2YUYVA_Split);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QNCS_RGBA2YUYVA_Split);
  QBO_PLANES_EXPORT(5, kMatrixFlip, QN_CS_BGRA2YUYVA_Split);
  add("QN_RGB32_2_YUV16_AA_Frame", [](Rng& r, Call& c) -> int64_t {
    int32_t w, h;
    PictureSize(r, &w, &h);
    if (r.OneIn(4)) {  // the width that switches to BT.709
      w = 1440 + r.In(0, 3);
      h = r.In(1, 3);
    }
    const int32_t reserved = r.In(0, 9), is_bgra = r.In(0, 0x1FF), flip = r.In(0, 0x1FF);
    const Planes s = MakePlanes(c, 3, w, h);
    QN_RGB32_2_YUV16_AA_Frame(s.p[0], s.pitch[0], s.p[1], s.pitch[1], s.p[2], s.pitch[2], w, h,
                              reserved, is_bgra, flip);
    return 0;
  });
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_RGB2YUYV_Frame);
  QBO_PLANES_EXPORT(2, kMatrixFlip, QN_CS_BGR2YUYV_Frame);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_RGB2YUYV_Split);
  QBO_PLANES_EXPORT(3, kMatrixFlip, QN_CS_BGR2YUYV_Split);
  return e;
}

}  // namespace

int main(int argc, char** argv) {
  int calls = 2000;
  uint64_t seed = 0x5EEDu;
  std::string trace;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (!std::strcmp(argv[i], "--calls")) calls = std::atoi(argv[i + 1]);
    else if (!std::strcmp(argv[i], "--seed")) seed = std::strtoull(argv[i + 1], nullptr, 0);
    else if (!std::strcmp(argv[i], "--trace")) trace = argv[i + 1];
    else {
      std::fprintf(stderr, "usage: invariance [--calls N] [--seed S] [--trace NAME]\n");
      return 2;
    }
  }
  const std::vector<Export> exports = Exports();
  for (const Export& ex : exports) {
    // Each export draws from a stream of its own name, so adding one
    // changes no other export's calls.
    Digest name;
    name.Bytes(ex.name, std::strlen(ex.name));
    Rng rng(seed ^ name.h);
    Digest all;
    for (int i = 0; i < calls; ++i) {
      Call call(&rng);
      const int64_t result = ex.body(rng, call);
      Digest one;
      call.Finish(&one, result);
      all.Value(static_cast<int64_t>(one.h));
      if (trace == ex.name) std::printf("%s %d %016" PRIx64 "\n", ex.name, i, one.h);
    }
    if (trace.empty()) std::printf("%-30s %6d %016" PRIx64 "\n", ex.name, calls, all.h);
  }
  return 0;
}
