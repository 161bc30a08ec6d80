// The pixel work of the tool, each operation a call into the library on
// whole frames. Whether the library this tool was built against has an
// export is known at configure time; an operation whose export is missing
// throws a ToolError naming it, and LibraryHas() lets callers skip it.
#ifndef QUILLON_TOOL_PIXEL_OPS_H_
#define QUILLON_TOOL_PIXEL_OPS_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pixel_format.h"

namespace quillon {

bool LibraryHas(std::string_view export_name);

// Every export the tool can use, with whether this build has it.
struct ExportPresence {
  const char* name;
  bool present;
};
std::vector<ExportPresence> ToolExports();

enum class ScaleFilter { kBilinear, kMean, kFourTap, kEightTap };
const char* ScaleFilterName(ScaleFilter filter);
const char* ScaleExport(ScaleFilter filter);
std::optional<ScaleFilter> ParseScaleFilter(std::string_view name);

// The exports a conversion between two formats needs ("" when none).
std::vector<std::string> ExportsForToBgra(PixelFormat format, FieldOrder order);
std::vector<std::string> ExportsForFromBgra(PixelFormat format);

// Any format to BGRA. 4:2:0 chroma is taken by field when `src.order` says
// the frame is interlaced (the library's own 4:2:0 layout) and repeated
// over each pair of rows when it is progressive.
void ToBgra(const Frame& src, Frame& dst, bool bt709);
// BGRA to `format`; 4:2:0 is made by field for an interlaced frame, over
// pairs of rows for a progressive one.
void FromBgra(const Frame& src, PixelFormat format, Frame& dst, bool bt709);

// YUV to another YUV layout with the luma moved, never converted: packed
// <-> planar moves bytes, 4:2:0 -> 4:2:2 interpolates the chroma (by field
// for an interlaced frame, repeated over row pairs for a progressive one)
// and 4:2:2 -> 4:2:0 filters it the same way.
std::vector<std::string> ExportsForYuvLayout(PixelFormat from, PixelFormat to);
void ConvertYuvLayout(const Frame& src, PixelFormat format, Frame& dst);

// Maps a YUV frame's samples from one range to the other in place, rounded
// to nearest: limited luma 16..235 and chroma 16..240 (128 centred) span
// full 0..255. Values outside the limited range are clamped.
void ConvertRange(Frame& frame, ColorRange from, ColorRange to);

// Planar 4:2:0 (interlaced chroma) to packed YUYV and YUYV to BGRA, the
// two halves of the conversion by way of YUYV.
void Yuv420ToYuyv(const Frame& src, Frame& dst);
void YuyvToBgra(const Frame& src, Frame& dst, bool bt709);

// Turns every plane upside down in place.
void FlipVertically(Frame& frame);

// Scales a BGRA frame to dst's size (dst must be BGRA, already sized).
void Scale(const Frame& src, Frame& dst, ScaleFilter filter);

// Lays a BGRA overlay with its alpha over a BGRA frame at (x, y); parts
// outside the frame are clipped.
void Overlay(Frame& frame, const Frame& overlay, int x, int y);

// Frame rows 0, 2, 4, ... to `top`, rows 1, 3, 5, ... to `bottom`, plane by
// plane (4:2:0 chroma rows go to their own field the same way).
void SplitFields(const Frame& frame, Frame& top, Frame& bottom);
// The inverse: two fields of one size into a frame of twice the height.
void ComposeFields(const Frame& top, const Frame& bottom, Frame& frame);
// "" when `frame` can be split into two fields, else the reason.
std::string CheckSplit(PixelFormat format, int height);

// Byte-order changes between the RGB formats, no arithmetic.
void Swizzle(const Frame& src, PixelFormat format, Frame& dst);

}  // namespace quillon

#endif  // QUILLON_TOOL_PIXEL_OPS_H_
