// YUV4MPEG2 streams: a one-line text header, then per frame a "FRAME" line
// and the planes in Y, U, V order. 4:2:0 (any chroma siting tag) and 4:2:2
// are read; the interlace tag decides how 4:2:0 chroma rows are taken (by
// field or progressive) and which field comes first.
#ifndef QUILLON_TOOL_Y4M_IO_H_
#define QUILLON_TOOL_Y4M_IO_H_

#include <string>

#include "files.h"
#include "pixel_format.h"

namespace quillon {

// Parses a header line without its "\n"; failures name `path`.
StreamInfo ParseY4mHeader(const std::string& path, const std::string& line);
std::string FormatY4mHeader(const StreamInfo& info);

class Y4mReader {
 public:
  explicit Y4mReader(const std::string& path);
  const StreamInfo& info() const { return info_; }
  // Fills `frame`; false at the end of the stream. A short frame throws.
  bool Read(Frame& frame);

 private:
  InputFile file_;
  StreamInfo info_;
  int64_t frames_read_ = 0;
};

class Y4mWriter {
 public:
  // Writes 4:2:0 or 4:2:2 frames of info's size; the header is written now.
  Y4mWriter(const std::string& path, const StreamInfo& info);
  void Write(const Frame& frame);
  void Finish() { file_.Commit(); }

 private:
  OutputFile file_;
  StreamInfo info_;
};

}  // namespace quillon

#endif  // QUILLON_TOOL_Y4M_IO_H_
