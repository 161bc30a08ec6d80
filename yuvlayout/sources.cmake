list(APPEND QBO_SOURCES
  yuvlayout/field_frame.cc
  yuvlayout/yuv420_to_yuyv.cc
  yuvlayout/yuvlayout_kernels.cc
  yuvlayout/yuvlayout_row_avx2.cc
  yuvlayout/yuvlayout_row_avx512.cc
  yuvlayout/yuvlayout_row_c.cc
  yuvlayout/yuvlayout_row_sse2.cc
  yuvlayout/yuyv_to_yuv420.cc)
