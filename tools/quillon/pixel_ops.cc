#include "pixel_ops.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "errors.h"

// QUILLON_HAVE_<export> is 1 or 0, set at configure time from what the
// library's header declares, so the tool builds against any state of the
// library and uses each export as soon as it exists.
#define QUILLON_EXPORTS(X)     \
  X(QN_CS_YUV420_BGRA_Frame)   \
  X(QN_CS_YUV422_BGRA_Frame)   \
  X(QN_CS_YUYV2BGRA_Frame)     \
  X(QN_CS_BGRA2YUYV_Frame)     \
  X(QN_CS_420_422_YUVFrame)    \
  X(QN_CS_ComposeYUV422_Frame) \
  X(QN_CS_422_420_YUVFrame)    \
  X(QN_CS_422_420_YUVField)    \
  X(QN_CS_SplitFrame)          \
  X(QN_CS_ComposeFields)       \
  X(QN_BitBlt)                 \
  X(QN_StretchBlt)             \
  X(QN_StretchBlt_Mean)        \
  X(QN_Re4Sampling)            \
  X(QN_Re8Sampling)            \
  X(QN_OverTurnSelf)

namespace quillon {

namespace {

// Hands a byte pointer to an export whatever pointer type it declares.
class AnyPtr {
 public:
  explicit AnyPtr(const void* p) : p_(const_cast<void*>(p)) {}
  template <typename T>
  operator T*() const {
    return static_cast<T*>(p_);
  }

 private:
  void* p_;
};

[[noreturn]] void Missing(const char* export_name) {
  Fail(export_name, "this build of the QuillonBufferOperaU library does not have it yet");
}

void Require(const std::vector<std::string>& exports) {
  for (const std::string& name : exports) {
    if (!LibraryHas(name)) Missing(name.c_str());
  }
}

// One thin call per export, each compiled to a "missing" failure when the
// header lacks the export, so the frame-level code below has no #if.
void CallYuv420ToBgra(const Plane& d, const Plane& y, const Plane& u, const Plane& v, int32_t w,
                      int32_t h, int32_t bt709) {
#if QUILLON_HAVE_QN_CS_YUV420_BGRA_Frame
  QN_CS_YUV420_BGRA_Frame(AnyPtr(d.data), d.pitch, AnyPtr(y.data), y.pitch, AnyPtr(u.data), u.pitch,
                          AnyPtr(v.data), v.pitch, w, h, bt709, 0);
#else
  Missing("QN_CS_YUV420_BGRA_Frame");
#endif
}

void CallYuv422ToBgra(const Plane& d, const Plane& y, const Plane& u, const Plane& v, int32_t w,
                      int32_t h, int32_t bt709) {
#if QUILLON_HAVE_QN_CS_YUV422_BGRA_Frame
  QN_CS_YUV422_BGRA_Frame(AnyPtr(d.data), d.pitch, AnyPtr(y.data), y.pitch, AnyPtr(u.data), u.pitch,
                          AnyPtr(v.data), v.pitch, w, h, bt709, 0);
#else
  Missing("QN_CS_YUV422_BGRA_Frame");
#endif
}

void CallYuv420ToYuyv(const Plane& d, const Plane& y, const Plane& u, const Plane& v, int32_t w,
                      int32_t h, int32_t) {
#if QUILLON_HAVE_QN_CS_420_422_YUVFrame
  QN_CS_420_422_YUVFrame(AnyPtr(d.data), d.pitch, AnyPtr(y.data), y.pitch, AnyPtr(u.data), u.pitch,
                         AnyPtr(v.data), v.pitch, w, h);
#else
  Missing("QN_CS_420_422_YUVFrame");
#endif
}

void CallPlanar422ToYuyv(const Plane& d, const Plane& y, const Plane& u, const Plane& v, int32_t w,
                         int32_t h, int32_t) {
#if QUILLON_HAVE_QN_CS_ComposeYUV422_Frame
  QN_CS_ComposeYUV422_Frame(AnyPtr(d.data), d.pitch, AnyPtr(y.data), y.pitch, AnyPtr(u.data),
                            u.pitch, AnyPtr(v.data), v.pitch, w, h);
#else
  Missing("QN_CS_ComposeYUV422_Frame");
#endif
}

void CallYuyvTo420(const Plane& s, const Plane& y, const Plane& u, const Plane& v, int32_t w,
                   int32_t h, bool by_field) {
#if QUILLON_HAVE_QN_CS_422_420_YUVFrame && QUILLON_HAVE_QN_CS_422_420_YUVField
  auto* const convert = by_field ? &QN_CS_422_420_YUVFrame : &QN_CS_422_420_YUVField;
  convert(AnyPtr(y.data), y.pitch, AnyPtr(u.data), u.pitch, AnyPtr(v.data), v.pitch, AnyPtr(s.data),
          s.pitch, w, h);
#else
  Missing(by_field ? "QN_CS_422_420_YUVFrame" : "QN_CS_422_420_YUVField");
#endif
}

void CallYuyvToBgra(const Plane& d, const Plane& s, int32_t w, int32_t h, int32_t bt709) {
#if QUILLON_HAVE_QN_CS_YUYV2BGRA_Frame
  QN_CS_YUYV2BGRA_Frame(AnyPtr(d.data), d.pitch, AnyPtr(s.data), s.pitch, w, h, bt709, 0);
#else
  Missing("QN_CS_YUYV2BGRA_Frame");
#endif
}

void CallBgraToYuyv(const Plane& d, const Plane& s, int32_t w, int32_t h, int32_t bt709) {
#if QUILLON_HAVE_QN_CS_BGRA2YUYV_Frame
  QN_CS_BGRA2YUYV_Frame(AnyPtr(d.data), d.pitch, AnyPtr(s.data), s.pitch, w, h, bt709, 0);
#else
  Missing("QN_CS_BGRA2YUYV_Frame");
#endif
}

// The 16 arguments the blits and stretches share, for a whole-buffer
// source rectangle.
struct BlitArgs {
  void* dst;
  int32_t x, y, width, height, dst_width, dst_height;
  const void* src;
  int32_t src_width, src_height, mode;
};

enum class BlitExport { kBitBlt, kStretchBlt, kStretchBltMean };

int32_t CallBlit(BlitExport which, const BlitArgs& a) {
  switch (which) {
    case BlitExport::kBitBlt:
#if QUILLON_HAVE_QN_BitBlt
      return QN_BitBlt(AnyPtr(a.dst), a.x, a.y, a.width, a.height, a.dst_width, a.dst_height,
                       AnyPtr(a.src), 0, 0, a.src_width, a.src_height, a.src_width, a.src_height,
                       a.mode, 0);
#else
      Missing("QN_BitBlt");
#endif
    case BlitExport::kStretchBlt:
#if QUILLON_HAVE_QN_StretchBlt
      return QN_StretchBlt(AnyPtr(a.dst), a.x, a.y, a.width, a.height, a.dst_width, a.dst_height,
                           AnyPtr(a.src), 0, 0, a.src_width, a.src_height, a.src_width,
                           a.src_height, a.mode, 0);
#else
      Missing("QN_StretchBlt");
#endif
    case BlitExport::kStretchBltMean:
#if QUILLON_HAVE_QN_StretchBlt_Mean
      return QN_StretchBlt_Mean(AnyPtr(a.dst), a.x, a.y, a.width, a.height, a.dst_width,
                                a.dst_height, AnyPtr(a.src), 0, 0, a.src_width, a.src_height,
                                a.src_width, a.src_height, a.mode, 0);
#else
      Missing("QN_StretchBlt_Mean");
#endif
  }
  return 0;
}

void CallResample(bool eight_taps, void* dst, int32_t dw, int32_t dh, const void* src, int32_t sw,
                  int32_t sh) {
#if QUILLON_HAVE_QN_Re4Sampling
  if (!eight_taps) {
    QN_Re4Sampling(AnyPtr(dst), dw, dh, AnyPtr(src), sw, sh);
    return;
  }
#endif
#if QUILLON_HAVE_QN_Re8Sampling
  if (eight_taps) {
    QN_Re8Sampling(AnyPtr(dst), dw, dh, AnyPtr(src), sw, sh);
    return;
  }
#endif
  Missing(eight_taps ? "QN_Re8Sampling" : "QN_Re4Sampling");
}

void CallFieldRows(bool split, const Plane& frame, const Plane& top, const Plane& bottom) {
#if QUILLON_HAVE_QN_CS_SplitFrame && QUILLON_HAVE_QN_CS_ComposeFields
  // Rows are moved as bytes, so every plane of every format goes through
  // with one byte a "pixel".
  if (split) {
    QN_CS_SplitFrame(AnyPtr(top.data), top.pitch, AnyPtr(bottom.data), bottom.pitch,
                     AnyPtr(frame.data), frame.pitch, frame.row_bytes, frame.rows, 1);
  } else {
    QN_CS_ComposeFields(AnyPtr(frame.data), frame.pitch, AnyPtr(top.data), top.pitch,
                        AnyPtr(bottom.data), bottom.pitch, frame.row_bytes, frame.rows, 1);
  }
#else
  Missing(split ? "QN_CS_SplitFrame" : "QN_CS_ComposeFields");
#endif
}

// A planar-to-packed export: destination, Y, U, V, width, height, bt709.
using PlanarCall = void (*)(const Plane& d, const Plane& y, const Plane& u, const Plane& v,
                            int32_t width, int32_t height, int32_t bt709);

// Runs a planar frame through `call_422` (4:2:2 and progressive 4:2:0) or
// `call_420` (interlaced 4:2:0) into the packed plane `d`.
void PlanarToPacked(const Frame& src, const Plane& d, PlanarCall call_422, PlanarCall call_420,
                    int32_t bt709) {
  const Plane y = src.plane(0);
  const Plane u = src.plane(1);
  const Plane v = src.plane(2);
  if (src.format() == PixelFormat::kYuv422p) {
    call_422(d, y, u, v, src.width(), src.height(), bt709);
  } else if (src.order != FieldOrder::kProgressive) {
    call_420(d, y, u, v, src.width(), src.height(), bt709);
  } else {
    // Progressive 4:2:0: each chroma row serves the two luma rows beside
    // it, which a chroma pitch of 0 over a pair of rows gives the 4:2:2
    // export.
    for (int pair = 0; pair < src.height() / 2; ++pair) {
      const Plane d2{d.data + 2 * pair * d.pitch, d.pitch, d.row_bytes, 2};
      const Plane y2{y.data + 2 * pair * y.pitch, y.pitch, y.row_bytes, 2};
      const Plane u2{u.data + pair * u.pitch, 0, u.row_bytes, 2};
      const Plane v2{v.data + pair * v.pitch, 0, v.row_bytes, 2};
      call_422(d2, y2, u2, v2, src.width(), 2, bt709);
    }
  }
}

std::vector<std::string> DirectToBgra(PixelFormat format, FieldOrder order) {
  if (format == PixelFormat::kYuv420p && order != FieldOrder::kProgressive) {
    return {"QN_CS_YUV420_BGRA_Frame"};
  }
  return {"QN_CS_YUV422_BGRA_Frame"};
}

std::vector<std::string> ViaYuyvToBgra(PixelFormat format, FieldOrder order) {
  if (format == PixelFormat::kYuv420p && order != FieldOrder::kProgressive) {
    return {"QN_CS_420_422_YUVFrame", "QN_CS_YUYV2BGRA_Frame"};
  }
  return {"QN_CS_ComposeYUV422_Frame", "QN_CS_YUYV2BGRA_Frame"};
}

bool AllPresent(const std::vector<std::string>& exports) {
  for (const std::string& name : exports) {
    if (!LibraryHas(name)) return false;
  }
  return true;
}

Frame& YuyvScratch() {
  static Frame scratch;
  return scratch;
}

void BgraToYuyv(const Frame& src, Frame& dst, bool bt709) {
  dst.Reset(PixelFormat::kYuyv422, src.width(), src.height());
  dst.order = src.order;
  CallBgraToYuyv(dst.plane(0), src.plane(0), src.width(), src.height(), bt709 ? 1 : 0);
}

// YUYV's bytes Y0 U Y1 V into three planes: a layout change, no arithmetic.
void YuyvToPlanar422(const Frame& src, Frame& dst) {
  dst.Reset(PixelFormat::kYuv422p, src.width(), src.height());
  dst.order = src.order;
  const Plane s = src.plane(0);
  const Plane y = dst.plane(0);
  const Plane u = dst.plane(1);
  const Plane v = dst.plane(2);
  for (int row = 0; row < src.height(); ++row) {
    const uint8_t* in = s.data + row * s.pitch;
    uint8_t* out_y = y.data + row * y.pitch;
    uint8_t* out_u = u.data + row * u.pitch;
    uint8_t* out_v = v.data + row * v.pitch;
    for (int pair = 0; pair < src.width() / 2; ++pair) {
      out_y[2 * pair] = in[4 * pair];
      out_u[pair] = in[4 * pair + 1];
      out_y[2 * pair + 1] = in[4 * pair + 2];
      out_v[pair] = in[4 * pair + 3];
    }
  }
}

bool Interlaced(const Frame& frame) { return frame.order != FieldOrder::kProgressive; }

}  // namespace

bool LibraryHas(std::string_view export_name) {
  for (const ExportPresence& entry : ToolExports()) {
    if (export_name == entry.name) return entry.present;
  }
  return false;
}

std::vector<ExportPresence> ToolExports() {
#define QUILLON_PRESENCE(name) {#name, QUILLON_HAVE_##name != 0},
  return {QUILLON_EXPORTS(QUILLON_PRESENCE)};
#undef QUILLON_PRESENCE
}

namespace {

struct FilterRow {
  ScaleFilter filter;
  const char* name;
  const char* export_name;
};

constexpr FilterRow kFilters[] = {
    {ScaleFilter::kBilinear, "bilinear", "QN_StretchBlt"},
    {ScaleFilter::kMean, "mean", "QN_StretchBlt_Mean"},
    {ScaleFilter::kFourTap, "4tap", "QN_Re4Sampling"},
    {ScaleFilter::kEightTap, "8tap", "QN_Re8Sampling"},
};

const FilterRow& FilterOf(ScaleFilter filter) {
  for (const FilterRow& row : kFilters) {
    if (row.filter == filter) return row;
  }
  return kFilters[0];
}

}  // namespace

const char* ScaleFilterName(ScaleFilter filter) { return FilterOf(filter).name; }

const char* ScaleExport(ScaleFilter filter) { return FilterOf(filter).export_name; }

std::optional<ScaleFilter> ParseScaleFilter(std::string_view name) {
  for (const FilterRow& row : kFilters) {
    if (name == row.name) return row.filter;
  }
  return std::nullopt;
}

std::vector<std::string> ExportsForToBgra(PixelFormat format, FieldOrder order) {
  if (format == PixelFormat::kYuyv422) return {"QN_CS_YUYV2BGRA_Frame"};
  if (!IsPlanar(format)) return {};
  const std::vector<std::string> direct = DirectToBgra(format, order);
  const std::vector<std::string> via = ViaYuyvToBgra(format, order);
  return AllPresent(direct) || !AllPresent(via) ? direct : via;
}

std::vector<std::string> ExportsForFromBgra(PixelFormat format) {
  switch (format) {
    case PixelFormat::kYuv420p:
      return {"QN_CS_BGRA2YUYV_Frame", "QN_CS_422_420_YUVFrame", "QN_CS_422_420_YUVField"};
    case PixelFormat::kYuv422p:
    case PixelFormat::kYuyv422:
      return {"QN_CS_BGRA2YUYV_Frame"};
    default:
      return {};
  }
}

void ToBgra(const Frame& src, Frame& dst, bool bt709) {
  if (!IsYuv(src.format())) {
    Swizzle(src, PixelFormat::kBgra, dst);
    return;
  }
  Require(ExportsForToBgra(src.format(), src.order));
  if (src.format() == PixelFormat::kYuyv422) {
    YuyvToBgra(src, dst, bt709);
    return;
  }
  const int32_t flag709 = bt709 ? 1 : 0;
  if (AllPresent(DirectToBgra(src.format(), src.order))) {
    dst.Reset(PixelFormat::kBgra, src.width(), src.height());
    dst.order = src.order;
    PlanarToPacked(src, dst.plane(0), CallYuv422ToBgra, CallYuv420ToBgra, flag709);
    return;
  }
  // By way of YUYV, which gives the same pixels, except that the library's
  // interlaced 4:2:0-to-YUYV conversion blackens the last row of a
  // 576-row picture.
  Frame& yuyv = YuyvScratch();
  yuyv.Reset(PixelFormat::kYuyv422, src.width(), src.height());
  yuyv.order = src.order;
  PlanarToPacked(src, yuyv.plane(0), CallPlanar422ToYuyv, CallYuv420ToYuyv, 0);
  YuyvToBgra(yuyv, dst, bt709);
}

void FromBgra(const Frame& src, PixelFormat format, Frame& dst, bool bt709) {
  if (!IsYuv(format)) {
    Swizzle(src, format, dst);
    return;
  }
  Require(ExportsForFromBgra(format));
  if (format == PixelFormat::kYuyv422) {
    BgraToYuyv(src, dst, bt709);
    return;
  }
  Frame& yuyv = YuyvScratch();
  BgraToYuyv(src, yuyv, bt709);
  if (format == PixelFormat::kYuv422p) {
    YuyvToPlanar422(yuyv, dst);
    return;
  }
  dst.Reset(PixelFormat::kYuv420p, src.width(), src.height());
  dst.order = src.order;
  CallYuyvTo420(yuyv.plane(0), dst.plane(0), dst.plane(1), dst.plane(2), src.width(), src.height(),
                Interlaced(src));
}

std::vector<std::string> ExportsForYuvLayout(PixelFormat from, PixelFormat to) {
  std::vector<std::string> names;
  if (from == to) return names;
  if (from == PixelFormat::kYuv422p) names.push_back("QN_CS_ComposeYUV422_Frame");
  if (from == PixelFormat::kYuv420p) {
    names.insert(names.end(), {"QN_CS_420_422_YUVFrame", "QN_CS_ComposeYUV422_Frame"});
  }
  if (to == PixelFormat::kYuv420p) {
    names.insert(names.end(), {"QN_CS_422_420_YUVFrame", "QN_CS_422_420_YUVField"});
  }
  return names;
}

void ConvertYuvLayout(const Frame& src, PixelFormat format, Frame& dst) {
  if (src.format() == format) {
    Swizzle(src, format, dst);
    return;
  }
  Require(ExportsForYuvLayout(src.format(), format));
  const int w = src.width(), h = src.height();
  const Frame* yuyv = &src;
  Frame& scratch = YuyvScratch();
  if (src.format() != PixelFormat::kYuyv422) {
    scratch.Reset(PixelFormat::kYuyv422, w, h);
    scratch.order = src.order;
    PlanarToPacked(src, scratch.plane(0), CallPlanar422ToYuyv, CallYuv420ToYuyv, 0);
    if (src.format() == PixelFormat::kYuv420p && Interlaced(src) && h == 576) {
      // The library blackens the last row of a 576-row picture; a layout
      // change keeps it: its luma, and the bottom field's last chroma row,
      // which that row takes unchanged.
      const Plane y = src.plane(0), u = src.plane(1), v = src.plane(2), d = scratch.plane(0);
      const uint8_t* ly = y.data + static_cast<std::size_t>(h - 1) * y.pitch;
      const uint8_t* lu = u.data + static_cast<std::size_t>(h / 2 - 1) * u.pitch;
      const uint8_t* lv = v.data + static_cast<std::size_t>(h / 2 - 1) * v.pitch;
      uint8_t* out = d.data + static_cast<std::size_t>(h - 1) * d.pitch;
      for (int pair = 0; pair < w / 2; ++pair) {
        out[4 * pair] = ly[2 * pair];
        out[4 * pair + 1] = lu[pair];
        out[4 * pair + 2] = ly[2 * pair + 1];
        out[4 * pair + 3] = lv[pair];
      }
    }
    yuyv = &scratch;
  }
  if (format == PixelFormat::kYuyv422) {
    Swizzle(*yuyv, format, dst);
  } else if (format == PixelFormat::kYuv422p) {
    YuyvToPlanar422(*yuyv, dst);
  } else {
    dst.Reset(PixelFormat::kYuv420p, w, h);
    dst.order = src.order;
    CallYuyvTo420(yuyv->plane(0), dst.plane(0), dst.plane(1), dst.plane(2), w, h,
                  Interlaced(src));
  }
}

void ConvertRange(Frame& frame, ColorRange from, ColorRange to) {
  if (from == to || !IsYuv(frame.format())) return;
  const bool expand = from == ColorRange::kLimited;
  uint8_t luma[256], chroma[256];
  for (int i = 0; i < 256; ++i) {
    const double y = expand ? (i - 16) * 255.0 / 219.0 : i * 219.0 / 255.0 + 16;
    const double c = 128 + (i - 128) * (expand ? 255.0 / 224.0 : 224.0 / 255.0);
    luma[i] = static_cast<uint8_t>(std::clamp(std::floor(y + 0.5), 0.0, 255.0));
    chroma[i] = static_cast<uint8_t>(std::clamp(std::floor(c + 0.5), 0.0, 255.0));
  }
  // Planar: plane 0 luma, the others chroma. YUYV: even bytes luma, odd chroma.
  const bool planar = IsPlanar(frame.format());
  for (int p = 0; p < frame.plane_count(); ++p) {
    const Plane plane = frame.plane(p);
    const uint8_t* even = planar && p > 0 ? chroma : luma;
    const uint8_t* odd = planar && p == 0 ? luma : chroma;
    for (int row = 0; row < plane.rows; ++row) {
      uint8_t* s = plane.data + static_cast<std::size_t>(row) * plane.pitch;
      for (int32_t i = 0; i + 1 < plane.row_bytes; i += 2) {
        s[i] = even[s[i]];
        s[i + 1] = odd[s[i + 1]];
      }
      if (plane.row_bytes % 2) s[plane.row_bytes - 1] = even[s[plane.row_bytes - 1]];
    }
  }
}

void Yuv420ToYuyv(const Frame& src, Frame& dst) {
  dst.Reset(PixelFormat::kYuyv422, src.width(), src.height());
  dst.order = src.order;
  CallYuv420ToYuyv(dst.plane(0), src.plane(0), src.plane(1), src.plane(2), src.width(),
                   src.height(), 0);
}

void YuyvToBgra(const Frame& src, Frame& dst, bool bt709) {
  dst.Reset(PixelFormat::kBgra, src.width(), src.height());
  dst.order = src.order;
  CallYuyvToBgra(dst.plane(0), src.plane(0), src.width(), src.height(), bt709 ? 1 : 0);
}

void FlipVertically(Frame& frame) {
  for (int i = 0; i < frame.plane_count(); ++i) {
    const Plane p = frame.plane(i);
    if (QN_OverTurnSelf(p.data, p.pitch, p.rows) != 1) {
      Fail("QN_OverTurnSelf", "could not turn the picture over");
    }
  }
}

void Scale(const Frame& src, Frame& dst, ScaleFilter filter) {
  if (filter == ScaleFilter::kFourTap || filter == ScaleFilter::kEightTap) {
    CallResample(filter == ScaleFilter::kEightTap, dst.data(), dst.width(), dst.height(),
                 src.data(), src.width(), src.height());
    return;
  }
  const BlitArgs args{dst.data(),
                      0,
                      0,
                      dst.width(),
                      dst.height(),
                      dst.width(),
                      dst.height(),
                      src.data(),
                      src.width(),
                      src.height(),
                      1};
  const int32_t result = CallBlit(
      filter == ScaleFilter::kMean ? BlitExport::kStretchBltMean : BlitExport::kStretchBlt, args);
  if (result != 1) {
    Fail(ScaleExport(filter), "refused the scale (result " + std::to_string(result) + ")");
  }
}

void Overlay(Frame& frame, const Frame& overlay, int x, int y) {
  // Mode 0 is alpha over. A result of 0 means the overlay lies wholly
  // outside the frame: nothing to do.
  const BlitArgs args{frame.data(),
                      x,
                      y,
                      overlay.width(),
                      overlay.height(),
                      frame.width(),
                      frame.height(),
                      overlay.data(),
                      overlay.width(),
                      overlay.height(),
                      0};
  CallBlit(BlitExport::kBitBlt, args);
}

std::string CheckSplit(PixelFormat format, int height) {
  const int multiple = format == PixelFormat::kYuv420p ? 4 : 2;
  if (height % multiple == 0) return "";
  return std::string("splitting ") + FormatName(format) + " into fields needs a height that is a " +
         "multiple of " + std::to_string(multiple) + ", not " + std::to_string(height);
}

void SplitFields(const Frame& frame, Frame& top, Frame& bottom) {
  top.Reset(frame.format(), frame.width(), frame.height() / 2);
  bottom.Reset(frame.format(), frame.width(), frame.height() / 2);
  top.order = bottom.order = FieldOrder::kProgressive;
  for (int i = 0; i < frame.plane_count(); ++i) {
    CallFieldRows(true, frame.plane(i), top.plane(i), bottom.plane(i));
  }
}

void ComposeFields(const Frame& top, const Frame& bottom, Frame& frame) {
  frame.Reset(top.format(), top.width(), top.height() * 2);
  for (int i = 0; i < frame.plane_count(); ++i) {
    CallFieldRows(false, frame.plane(i), top.plane(i), bottom.plane(i));
  }
}

void Swizzle(const Frame& src, PixelFormat format, Frame& dst) {
  // Where R, G, B and A sit in each 32- or 24-bit layout (-1: no alpha).
  struct Layout {
    int r, g, b, a, size;
  };
  const auto layout_of = [](PixelFormat f) -> Layout {
    switch (f) {
      case PixelFormat::kBgra:
        return {2, 1, 0, 3, 4};
      case PixelFormat::kRgba:
        return {0, 1, 2, 3, 4};
      case PixelFormat::kRgb24:
        return {0, 1, 2, -1, 3};
      default:
        return {2, 1, 0, -1, 3};
    }
  };
  const Layout in = layout_of(src.format());
  const Layout out = layout_of(format);
  dst.Reset(format, src.width(), src.height());
  dst.order = src.order;
  if (src.format() == format) {
    std::memcpy(dst.data(), src.data(), src.byte_size());
    return;
  }
  const std::size_t pixels = static_cast<std::size_t>(src.width()) * src.height();
  const uint8_t* s = src.data();
  uint8_t* d = dst.data();
  for (std::size_t i = 0; i < pixels; ++i, s += in.size, d += out.size) {
    d[out.r] = s[in.r];
    d[out.g] = s[in.g];
    d[out.b] = s[in.b];
    if (out.a >= 0) d[out.a] = in.a >= 0 ? s[in.a] : 255;
  }
}

}  // namespace quillon
