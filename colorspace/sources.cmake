list(APPEND QBO_SOURCES
  colorspace/colorspace_kernels.cc)
list(APPEND QBO_SOURCES
  colorspace/rgba_to_yuyv.cc
  colorspace/rgb24_to_yuyv.cc
  colorspace/rgba_to_yuyv_row_c.cc
  colorspace/rgba_to_yuyv_row_sse2.cc
  colorspace/rgba_to_yuyv_row_avx2.cc)
