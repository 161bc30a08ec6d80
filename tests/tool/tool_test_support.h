// Helpers for the quillon tests: a scratch folder removed afterwards, the
// program run with captured output, and small files made on the spot.
#ifndef QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_
#define QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_

#include <sys/wait.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "pixel_format.h"

namespace quillon::test {

namespace fs = std::filesystem;

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class TempDir {
 public:
  TempDir() {
    std::string pattern = (fs::temp_directory_path() / "quillon-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  // Names in the folder, sorted (hidden temporary files included).
  std::vector<std::string> List() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string path_;
};

struct RunResult {
  int status;
  std::string out;
  std::string err;
};

// Runs the quillon program with `args` in `dir`'s folder, standard input
// closed to a null device.
inline RunResult RunQuillon(const std::vector<std::string>& args, const TempDir& dir) {
  auto quote = [](const std::string& arg) {
    std::string quoted = "'";
    for (char c : arg) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
  };
  std::string command = "cd " + quote(dir.path()) + " && " + quote(QUILLON_BINARY);
  for (const std::string& arg : args) command.append(" ").append(quote(arg));
  // Appended piece by piece: GCC 12 sees a false overlap in "literal" + string.
  const std::string out = dir / ".stdout", err = dir / ".stderr";
  command.append(" >").append(quote(out)).append(" 2>").append(quote(err)).append(" </dev/null");
  const int raw = std::system(command.c_str());
  RunResult result{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(out), ReadFile(err)};
  fs::remove(out);
  fs::remove(err);
  return result;
}

// A frame of `format` filled with bytes from `seed`.
inline Frame RandomFrame(PixelFormat format, int width, int height, uint32_t seed) {
  Frame frame(format, width, height);
  std::mt19937 random(seed);
  for (std::size_t i = 0; i < frame.byte_size(); ++i) {
    frame.data()[i] = static_cast<uint8_t>(random() >> 24);
  }
  return frame;
}

inline bool SameBytes(const Frame& a, const Frame& b) {
  return a.format() == b.format() && a.width() == b.width() && a.height() == b.height() &&
         std::memcmp(a.data(), b.data(), a.byte_size()) == 0;
}

}  // namespace quillon::test

#endif  // QUILLON_TESTS_TOOL_TOOL_TEST_SUPPORT_H_
