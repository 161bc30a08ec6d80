// Entry points of the stretches shared with the block transfer.
#ifndef QBO_BLIT_STRETCH_BLT_H_
#define QBO_BLIT_STRETCH_BLT_H_

#include <cstdint>

#include "blit/blit_args.h"

namespace qbo {

BlitArgs MakeBlitArgs(void* dst, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
                      int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcX,
                      int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight,
                      int32_t srcWidth, int32_t srcHeight, int32_t mode, int32_t field);

// QN_StretchBlt (mode check and hand-over to the mean included), its
// bilinear part, and QN_StretchBlt_Mean, on widened arguments.
int32_t Stretch(const BlitArgs& a);
int32_t StretchBilinear(const BlitArgs& a);
int32_t StretchMean(const BlitArgs& a);

}  // namespace qbo

#endif  // QBO_BLIT_STRETCH_BLT_H_
