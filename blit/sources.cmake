list(APPEND QBO_SOURCES
  blit/blit_kernels.cc
  blit/zoom_kernels.cc
  blit/bit_blt.cc
  blit/stretch_plan.cc
  blit/stretch_blt.cc
  blit/yuyv_mean_stretch.cc
  blit/blend_row_c.cc
  blit/blend_row_sse2.cc
  blit/blend_row_avx2.cc
  blit/bilinear_row_c.cc
  blit/bilinear_row_sse2.cc
  blit/bilinear_row_avx2.cc
  blit/mean_row_c.cc
  blit/mean_row_sse2.cc
  blit/mean_row_avx2.cc)
