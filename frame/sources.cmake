list(APPEND QBO_SOURCES
  frame/accel.cc
  frame/attach.cc
  frame/coef_block.cc
  frame/cpu.cc
  frame/kernel_table.cc
  frame/lookup_tables.cc
  frame/platform.cc
  frame/platform_posix.cc
  frame/platform_win32.cc)
# The process entry lives only in the shared library, so test programs that
# link the core drive attach and detach themselves.
set(QBO_ENTRY_SOURCES frame/entry_posix.cc frame/entry_win32.cc)
