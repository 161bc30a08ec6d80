// The preparation the bilinear and mean stretches share (clipping, scale
// factors, start positions, field stepping) and their per-call tables.
#ifndef QBO_BLIT_STRETCH_PLAN_H_
#define QBO_BLIT_STRETCH_PLAN_H_

#include <cstddef>
#include <cstdint>

#include "blit/blit_args.h"
#include "frame/single_precision.h"

namespace qbo {

struct StretchPlan {
  // Clipped rectangles.
  int64_t dst_x, dst_y, width, height;
  int64_t src_x, src_y, src_rect_width, src_rect_height;
  // Source pixels per destination pixel, from the unclipped rectangles.
  float scale_x, scale_y;
  // Source position of the first clipped destination pixel.
  float start_x, start_y;
  // Rows of the clipped rectangle written: first_row, first_row + row_step, ...
  int64_t first_row, row_step;
};

// Clips and prepares; false when the call must do nothing. `mean` adds the
// mean stretch's extra checks after the destination and source overhangs.
// Besides the published checks it fails when nothing is left of either
// rectangle after clipping.
bool PrepareStretch(const BlitArgs& a, bool mean, StretchPlan* p);

// One axis of the bilinear tables, `n` destination positions from `start`
// by `scale` (accumulated in single precision). index[i] is the source
// column or row, clamped to 0..last_index; weight[i] the weight of that
// sample in 0..65535 (its neighbour gets 65535 - weight). The final
// position uses its own index when the source rectangle stops short of the
// buffer's edge (`edge_inside`), otherwise it copies the sample after
// last_index.
void BuildBilinearAxis(float start, float scale, int64_t n, int64_t last_index,
                       bool edge_inside, int32_t* index, uint32_t* weight);

// One axis of the mean tables: counts[i] samples with first/last weights
// weights[2i], weights[2i + 1], carrying the fraction of `start`. The last
// position closes with the full weight 1.0.
void BuildMeanAxis(float start, float scale, int64_t n, int32_t* counts, float* weights);

// Shortens the areas of a mean walk so that it reads no sample at or past
// `available`, and returns how many samples it reads.
int64_t LimitMeanWalk(int32_t* counts, int64_t n, int64_t available);

// 1 / scale in double precision, stored single.
inline float MeanNorm(float scale) { return RoundToSingle(1.0 / static_cast<double>(scale)); }

}  // namespace qbo

#endif  // QBO_BLIT_STRETCH_PLAN_H_
