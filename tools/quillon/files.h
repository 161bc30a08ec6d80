// Files as the tool uses them: inputs read in whole frames, outputs written
// under a temporary name in the destination's folder and renamed into place
// only when complete, so a failed or interrupted run never leaves a
// half-written file under the name the user asked for. Only a regular file
// is replaced that way: devices, FIFOs and standard output are written
// straight through, and a symbolic link is followed to the file it names.
#ifndef QUILLON_TOOL_FILES_H_
#define QUILLON_TOOL_FILES_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace quillon {

class InputFile {
 public:
  // "-" reads standard input.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const std::string& path() const { return path_; }
  // Reads up to `size` bytes; returns how many were read (short only at the
  // end of the file). Read errors throw.
  std::size_t Read(void* data, std::size_t size);
  // Reads one byte, or returns -1 at the end of the file.
  int ReadByte();
  // Bytes in the file, or -1 for a pipe or terminal.
  int64_t size() const { return size_; }
  // Bytes not yet read, or -1 when the size is not known.
  int64_t Remaining();
  std::FILE* stream() { return file_; }

 private:
  std::string path_;
  std::FILE* file_ = nullptr;
  bool owned_ = false;
  int64_t size_ = -1;
};

class OutputFile {
 public:
  // "-" writes standard output directly (nothing to rename).
  explicit OutputFile(const std::string& path);
  // Removes the temporary file unless Commit() ran; a file written straight
  // through keeps what was written.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  const std::string& path() const { return path_; }
  std::FILE* stream() { return file_; }
  void Write(const void* data, std::size_t size);
  // Flushes, closes and renames the temporary file to the final name.
  void Commit();
  // True when the output replaces a regular file (temporary name, rename).
  bool replaces() const { return !temp_path_.empty(); }

 private:
  std::string path_;
  std::string target_;     // the file the rename replaces: path_, links followed
  std::string temp_path_;  // empty when written straight through
  std::FILE* file_ = nullptr;
  bool owned_ = false;
  bool committed_ = false;
};

// The name written while `path` is in progress: a hidden file beside it.
std::string TemporaryNameFor(const std::string& path);

}  // namespace quillon

#endif  // QUILLON_TOOL_FILES_H_
