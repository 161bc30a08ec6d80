list(APPEND QBO_SOURCES
  yuvlayout/yuvlayout_kernels.cc)
