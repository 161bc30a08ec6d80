list(APPEND QBO_SOURCES
  colorspace/colorspace_kernels.cc)
