// PNG pictures through libpng: 8-bit RGB and RGBA are written; anything
// libpng can expand to 8-bit RGB or RGBA (palette, grey, 16-bit, Adam7) is
// read.
#ifndef QUILLON_TOOL_PNG_IO_H_
#define QUILLON_TOOL_PNG_IO_H_

#include <string>

#include "pixel_format.h"

namespace quillon {

// Reads `path` into `frame` as rgb24 (no alpha in the file) or rgba.
void ReadPng(const std::string& path, Frame& frame);

// Writes an rgba, bgra, rgb24 or bgr24 frame under a temporary name and
// renames it into place.
void WritePng(const std::string& path, const Frame& frame);

// Width and height from the header alone; false when `path` is no PNG.
bool PngSize(const std::string& path, int& width, int& height);

}  // namespace quillon

#endif  // QUILLON_TOOL_PNG_IO_H_
