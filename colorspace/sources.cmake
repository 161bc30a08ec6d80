list(APPEND QBO_SOURCES
  colorspace/colorspace_kernels.cc
  colorspace/matrices_export.cc
  colorspace/rgb24_to_rgba.cc
  colorspace/rgb24_to_rgba_row_avx2.cc
  colorspace/rgb24_to_rgba_row_c.cc
  colorspace/rgb24_to_rgba_row_sse2.cc
  colorspace/rgb24_to_yuyv.cc
  colorspace/rgba_to_yuyv.cc
  colorspace/rgba_to_yuyv_row_avx2.cc
  colorspace/rgba_to_yuyv_row_c.cc
  colorspace/rgba_to_yuyv_row_sse2.cc
  colorspace/yuyv_to_rgba.cc
  colorspace/yuyv_to_rgba_row_avx2.cc
  colorspace/yuyv_to_rgba_row_c.cc
  colorspace/yuyv_to_rgba_row_sse2.cc)
