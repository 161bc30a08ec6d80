list(APPEND QBO_SOURCES
  blit/blit_kernels.cc
  blit/zoom_kernels.cc)
