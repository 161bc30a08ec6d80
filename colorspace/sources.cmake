list(APPEND QBO_SOURCES
  colorspace/colorspace_kernels.cc
  colorspace/yuyv_to_rgba_row_c.cc
  colorspace/yuyv_to_rgba_row_sse2.cc
  colorspace/yuyv_to_rgba_row_avx2.cc)
