// The demo's built-in interlaced picture: colour bars, grey and colour
// ramps, fine horizontal lines that differ between the two fields, and a
// disc that moves from frame to frame and between the fields of a frame
// (each field is its own instant, as a camera shoots them). An RGBA overlay
// panel with soft alpha goes with it.
#ifndef QUILLON_TOOL_TEST_PICTURE_H_
#define QUILLON_TOOL_TEST_PICTURE_H_

#include "pixel_format.h"

namespace quillon {

// Frame `index` of the sequence, top field first, as BGRA.
void DrawTestPictureBgra(int index, int width, int height, Frame& bgra);

// The same picture as interlaced planar 4:2:0 (full-range BT.601 YUV, each
// chroma row averaged over its own field's two rows), made by quillon
// itself so the library's conversions have an independent input.
void DrawTestPicture420(int index, int width, int height, Frame& yuv);

// An RGBA panel whose alpha fades from 40 to 230 across it and softly to 0
// at its rounded edges, with an opaque yellow mark.
void DrawOverlayRgba(int width, int height, Frame& rgba);

}  // namespace quillon

#endif  // QUILLON_TOOL_TEST_PICTURE_H_
