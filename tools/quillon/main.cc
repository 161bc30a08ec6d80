// quillon: the QuillonBufferOperaU library's operations from the shell.
#include <cstdio>
#include <new>
#include <string>
#include <vector>

#include "cli.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  return quillon::RunCommandLine(args);
}
