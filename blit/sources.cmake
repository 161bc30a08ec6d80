list(APPEND QBO_SOURCES
  blit/blit_kernels.cc
  blit/zoom_kernels.cc)
list(APPEND QBO_SOURCES
  blit/zoom.cc
  blit/zoom_clip.cc
  blit/zoom_row_c.cc
  blit/zoom_row_sse2.cc
  blit/zoom_row_avx2.cc)
