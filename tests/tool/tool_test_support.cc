#include "tool_test_support.h"

#include <dirent.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

namespace quillon::test {

namespace {

std::string Quote(const std::string& arg) {
  std::string quoted = "'";
  for (char c : arg) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

void RemoveTree(const std::string& path) {
  DIR* dir = ::opendir(path.c_str());
  if (dir != nullptr) {
    while (dirent* entry = ::readdir(dir)) {
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      const std::string child = path + "/" + name;
      struct stat st;
      if (::lstat(child.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
        RemoveTree(child);
      } else {
        ::unlink(child.c_str());
      }
    }
    ::closedir(dir);
  }
  ::rmdir(path.c_str());
}

}  // namespace

TempDir::TempDir() {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base != nullptr ? base : "/tmp") + "/quillon-test-XXXXXX";
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  if (::mkdtemp(buffer.data()) == nullptr) std::abort();
  path_ = buffer.data();
}

TempDir::~TempDir() { RemoveTree(path_); }

std::vector<std::string> TempDir::List() const { return ListDir(path_); }

std::vector<std::string> ListDir(const std::string& path) {
  std::vector<std::string> names;
  DIR* dir = ::opendir(path.c_str());
  if (dir == nullptr) return names;
  while (dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  ::closedir(dir);
  std::sort(names.begin(), names.end());
  return names;
}

RunResult RunQuillon(const std::vector<std::string>& args, const TempDir& dir) {
  std::string command = "cd " + Quote(dir.path()) + " && " + Quote(QUILLON_BINARY);
  for (const std::string& arg : args) command.append(" ").append(Quote(arg));
  const std::string out = dir / ".stdout";
  const std::string err = dir / ".stderr";
  command.append(" >").append(Quote(out)).append(" 2>").append(Quote(err)).append(" </dev/null");
  const int raw = std::system(command.c_str());
  RunResult result{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(out), ReadFile(err)};
  ::unlink(out.c_str());
  ::unlink(err.c_str());
  return result;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool FileExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

Frame RandomFrame(PixelFormat format, int width, int height, uint32_t seed) {
  Frame frame(format, width, height);
  std::mt19937 random(seed);
  for (std::size_t i = 0; i < frame.byte_size(); ++i) {
    frame.data()[i] = static_cast<uint8_t>(random() >> 24);
  }
  return frame;
}

bool SameBytes(const Frame& a, const Frame& b) {
  return a.format() == b.format() && a.width() == b.width() && a.height() == b.height() &&
         std::memcmp(a.data(), b.data(), a.byte_size()) == 0;
}

}  // namespace quillon::test
