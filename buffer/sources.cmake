list(APPEND QBO_SOURCES
  buffer/buffer_kernels.cc
  buffer/fill_copy.cc
  buffer/fill_copy_row_c.cc
  buffer/fill_copy_row_sse2.cc
  buffer/fill_copy_row_avx2.cc
  buffer/mask_kernels.cc)
list(APPEND QBO_SOURCES
  buffer/mask.cc
  buffer/mask_clip.cc
  buffer/mask_row_c.cc
  buffer/mask_row_sse2.cc
  buffer/mask_row_avx2.cc)
