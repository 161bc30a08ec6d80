#include "files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "errors.h"

namespace quillon {

namespace {

std::string SystemError() { return std::strerror(errno); }

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path) {
  if (path == "-") {
    file_ = stdin;
    path_ = "<stdin>";
    return;
  }
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) Fail(path, "cannot open: " + SystemError());
  if (S_ISDIR(st.st_mode)) Fail(path, "is a directory, not a file");
  file_ = std::fopen(path.c_str(), "rb");
  if (file_ == nullptr) Fail(path, "cannot open: " + SystemError());
  owned_ = true;
  if (S_ISREG(st.st_mode)) size_ = static_cast<int64_t>(st.st_size);
}

InputFile::~InputFile() {
  if (owned_) std::fclose(file_);
}

std::size_t InputFile::Read(void* data, std::size_t size) {
  const std::size_t got = std::fread(data, 1, size, file_);
  if (got < size && std::ferror(file_)) Fail(path_, "read error: " + SystemError());
  return got;
}

int64_t InputFile::Remaining() {
  if (size_ < 0) return -1;
  const off_t at = ::ftello(file_);
  return at < 0 ? -1 : size_ - static_cast<int64_t>(at);
}

int InputFile::ReadByte() {
  const int c = std::fgetc(file_);
  if (c == EOF && std::ferror(file_)) Fail(path_, "read error: " + SystemError());
  return c;
}

std::string TemporaryNameFor(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string dir = slash == std::string::npos ? "" : path.substr(0, slash + 1);
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  return dir + "." + base + ".quillon-" + std::to_string(::getpid()) + ".tmp";
}

OutputFile::OutputFile(const std::string& path) : path_(path), target_(path) {
  if (path == "-") {
    file_ = stdout;
    path_ = "<stdout>";
    return;
  }
  // What the name leads to (links followed), and whether it is a link.
  struct stat st, link;
  const bool exists = ::stat(path.c_str(), &st) == 0;
  const std::string why = SystemError();
  const bool is_link = ::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
  if (is_link && !exists) {
    Fail(path, "is a symbolic link to a file that cannot be reached: " + why);
  }
  if (exists && S_ISDIR(st.st_mode)) Fail(path, "is a directory, not a file");
  if (exists && !S_ISREG(st.st_mode)) {
    // A device, FIFO or socket: the reader at the other end wants the
    // bytes, and the node must stay what it is.
    file_ = std::fopen(path.c_str(), "wb");
    if (file_ == nullptr) Fail(path, "cannot open for writing: " + SystemError());
    owned_ = true;
    return;
  }
  if (is_link) {
    // Replace the file the link names, and keep the link.
    char resolved[PATH_MAX];
    if (::realpath(path.c_str(), resolved) == nullptr) {
      Fail(path, "cannot follow the symbolic link: " + SystemError());
    }
    target_ = resolved;
  }
  temp_path_ = TemporaryNameFor(target_);
  file_ = std::fopen(temp_path_.c_str(), "wb");
  if (file_ == nullptr) Fail(path, "cannot create: " + SystemError());
  owned_ = true;
}

OutputFile::~OutputFile() {
  if (committed_ || !owned_) return;
  std::fclose(file_);
  if (!temp_path_.empty()) std::remove(temp_path_.c_str());
}

void OutputFile::Write(const void* data, std::size_t size) {
  if (std::fwrite(data, 1, size, file_) != size) Fail(path_, "write error: " + SystemError());
}

void OutputFile::Commit() {
  if (temp_path_.empty()) {
    const bool flushed = std::fflush(file_) == 0;
    const bool closed = !owned_ || std::fclose(file_) == 0;
    committed_ = true;
    if (!flushed || !closed) Fail(path_, "write error: " + SystemError());
    return;
  }
  const bool flushed = std::fflush(file_) == 0;
  const int saved = errno;
  const bool closed = std::fclose(file_) == 0;
  committed_ = true;  // the stream is gone either way
  if (!flushed || !closed) {
    std::remove(temp_path_.c_str());
    errno = flushed ? errno : saved;
    Fail(path_, "write error: " + SystemError());
  }
  if (std::rename(temp_path_.c_str(), target_.c_str()) != 0) {
    const std::string why = SystemError();
    std::remove(temp_path_.c_str());
    Fail(path_, "cannot rename the finished file into place: " + why);
  }
}

}  // namespace quillon
