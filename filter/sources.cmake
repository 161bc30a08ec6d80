list(APPEND QBO_SOURCES
  filter/filter_kernels.cc)
