// The library's own paths of the three conversions a VelaVid module may take
// over, cut so that a band of rows can be run on its own. The exports run
// them over the whole frame; the VelaVid module in velavid/ runs the bands on
// several threads, which gives the same bytes because no band reads what
// another writes.
#ifndef QBO_FRAME_ACCEL_PATHS_H_
#define QBO_FRAME_ACCEL_PATHS_H_

#include <cstdint>

namespace qbo {

// QN_CS_YUYV2BGRA_Frame's own path for source rows [row_begin, row_end) of
// a frame of `height` rows (a flipped frame writes them bottom-up).
void YuyvToBgraFrameRows(void* dst, int32_t dst_pitch, const void* src, int32_t src_pitch,
                         int32_t width, int32_t height, int32_t bt709, int32_t flip,
                         int32_t row_begin, int32_t row_end);

// QN_CS_24_to_32_Split's own path without an alpha plane for destination
// rows [row_begin, row_end) of both halves: source rows 2k and 2k + 1 go to
// row k of dst0 and dst1. A half has (height + 1) / 2 rows; with an odd
// height its last row is the last source row, copied into dst1 as well.
void Rgb24To32SplitRows(void* dst0, int32_t dst_pitch0, void* dst1, int32_t dst_pitch1,
                        const void* src, int32_t src_pitch, int32_t width, int32_t height,
                        int32_t flip, int32_t row_begin, int32_t row_end);

// QN_CS_420_422_YUVSplit's own path for field rows [row_begin, row_end) of
// both fields (a field has height / 2 rows). The band holding a field's last
// row also blackens it where the export does (576-line pictures).
void Yuv420To422SplitRows(void* dst_top, int32_t top_pitch, void* dst_bottom,
                          int32_t bottom_pitch, const void* src_y, int32_t y_pitch,
                          const void* src_u, int32_t u_pitch, const void* src_v,
                          int32_t v_pitch, int32_t width, int32_t height, int32_t row_begin,
                          int32_t row_end);

}  // namespace qbo

#endif  // QBO_FRAME_ACCEL_PATHS_H_
