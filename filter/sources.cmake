list(APPEND QBO_SOURCES
  filter/filter_kernels.cc
  filter/resample.cc
  filter/resample_frame.cc
  filter/resample_pass.cc
  filter/resample_row_c.cc
  filter/resample_row_sse2.cc
  filter/resample_row_avx2.cc
  filter/blur_split.cc
  filter/blur_split_row_c.cc
  filter/blur_split_row_sse2.cc
  filter/blur_split_row_avx2.cc
  filter/yuyv_mix.cc
  filter/yuyv_mix_row_c.cc
  filter/yuyv_mix_row_sse2.cc
  filter/yuyv_mix_row_avx2.cc)
