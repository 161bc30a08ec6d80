// Helpers for the quillon tests: a scratch folder removed afterwards, the
// program run with captured output, and small files made on the spot.
#ifndef QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_
#define QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "pixel_format.h"

namespace quillon::test {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  // Names in the folder, sorted (hidden temporary files included).
  std::vector<std::string> List() const;

 private:
  std::string path_;
};

struct RunResult {
  int status;
  std::string out;
  std::string err;
};

// Runs the quillon program with `args` in `dir`'s folder.
RunResult RunQuillon(const std::vector<std::string>& args, const TempDir& dir);

// Names in a folder, sorted.
std::vector<std::string> ListDir(const std::string& path);

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);

// A frame of `format` filled with bytes from `seed`.
Frame RandomFrame(PixelFormat format, int width, int height, uint32_t seed);
bool SameBytes(const Frame& a, const Frame& b);

}  // namespace quillon::test

#endif  // QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_
