#include "y4m_io.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "errors.h"

namespace quillon {

namespace {

constexpr const char kMagic[] = "YUV4MPEG2";
// Header lines are short; a longer one means a binary file was handed in.
constexpr std::size_t kMaxLine = 4096;

bool ParseRatio(const std::string& text, int& num, int& den) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return false;
  char* end = nullptr;
  const long n = std::strtol(text.c_str(), &end, 10);
  if (end != text.c_str() + colon) return false;
  const long d = std::strtol(text.c_str() + colon + 1, &end, 10);
  if (*end != '\0' || n < 0 || d < 0 || n > 1000000000 || d > 1000000000) return false;
  num = static_cast<int>(n);
  den = static_cast<int>(d);
  return true;
}

bool ParseDimension(const std::string& text, int& value) {
  char* end = nullptr;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || v < 1 || v > 32768) return false;
  value = static_cast<int>(v);
  return true;
}

// Reads one "\n"-terminated line; false at a clean end of file.
bool ReadLine(InputFile& file, std::string& line, bool& cut) {
  line.clear();
  cut = false;
  for (;;) {
    const int c = file.ReadByte();
    if (c < 0) {
      cut = !line.empty();
      return !line.empty();
    }
    if (c == '\n') return true;
    if (line.size() >= kMaxLine) {
      cut = true;
      return true;
    }
    line.push_back(static_cast<char>(c));
  }
}

}  // namespace

StreamInfo ParseY4mHeader(const std::string& path, const std::string& line) {
  std::istringstream words(line);
  std::string word;
  words >> word;
  if (word != kMagic) Fail(path, "unknown format: not a YUV4MPEG2 stream");
  StreamInfo info;
  info.format = PixelFormat::kYuv420p;
  bool have_width = false;
  bool have_height = false;
  while (words >> word) {
    const char tag = word[0];
    const std::string value = word.substr(1);
    switch (tag) {
      case 'W':
        have_width = ParseDimension(value, info.width);
        if (!have_width) Fail(path, "bad width '" + value + "' in the YUV4MPEG2 header");
        break;
      case 'H':
        have_height = ParseDimension(value, info.height);
        if (!have_height) Fail(path, "bad height '" + value + "' in the YUV4MPEG2 header");
        break;
      case 'F':
        if (!ParseRatio(value, info.rate_num, info.rate_den) || info.rate_num == 0 ||
            info.rate_den == 0) {
          Fail(path, "bad frame rate '" + value + "' in the YUV4MPEG2 header");
        }
        break;
      case 'A':
        if (!ParseRatio(value, info.aspect_num, info.aspect_den)) {
          Fail(path, "bad aspect ratio '" + value + "' in the YUV4MPEG2 header");
        }
        break;
      case 'I':
        if (value == "p" || value == "?") {
          info.order = FieldOrder::kProgressive;
        } else if (value == "t") {
          info.order = FieldOrder::kTopFirst;
        } else if (value == "b") {
          info.order = FieldOrder::kBottomFirst;
        } else {
          Fail(path,
               "unsupported interlace mode I" + value + " (quillon reads Ip, It and Ib streams)");
        }
        break;
      case 'C':
        // The siting variants differ in where chroma sits, not in how much
        // there is; the library's own interlaced siting is used for all.
        if (value == "420jpeg" || value == "420mpeg2" || value == "420paldv" || value == "420") {
          info.format = PixelFormat::kYuv420p;
        } else if (value == "422") {
          info.format = PixelFormat::kYuv422p;
        } else {
          Fail(path, "unsupported chroma layout C" + value +
                         " (quillon reads 4:2:0 and 4:2:2: C420jpeg, C420mpeg2, C420paldv, "
                         "C420, C422)");
        }
        break;
      case 'X':
        if (value == "COLORRANGE=FULL") info.range = ColorRange::kFull;
        if (value == "COLORRANGE=LIMITED") info.range = ColorRange::kLimited;
        break;  // other X comments are allowed by the format
      default:
        break;  // unknown tags are allowed by the format
    }
  }
  if (!have_width || !have_height) Fail(path, "YUV4MPEG2 header lacks the W or H tag");
  const std::string size_problem = CheckSize(info.format, info.width, info.height);
  if (!size_problem.empty()) Fail(path, "unsupported size: " + size_problem);
  return info;
}

std::string FormatY4mHeader(const StreamInfo& info) {
  const char interlace = info.order == FieldOrder::kTopFirst      ? 't'
                         : info.order == FieldOrder::kBottomFirst ? 'b'
                                                                  : 'p';
  const char* chroma = info.format == PixelFormat::kYuv422p ? "422" : "420jpeg";
  const char* range = info.range == ColorRange::kFull      ? " XCOLORRANGE=FULL"
                      : info.range == ColorRange::kLimited ? " XCOLORRANGE=LIMITED"
                                                           : "";
  char header[192];
  std::snprintf(header, sizeof header, "%s W%d H%d F%d:%d I%c A%d:%d C%s%s\n", kMagic, info.width,
                info.height, info.rate_num, info.rate_den, interlace, info.aspect_num,
                info.aspect_den, chroma, range);
  return header;
}

Y4mReader::Y4mReader(const std::string& path) : file_(path) {
  std::string line;
  bool cut = false;
  if (!ReadLine(file_, line, cut) || line.compare(0, 9, kMagic) != 0) {
    Fail(file_.path(), "unknown format: not a YUV4MPEG2 stream");
  }
  if (cut) Fail(file_.path(), "YUV4MPEG2 header is not terminated");
  info_ = ParseY4mHeader(file_.path(), line);
  if (file_.size() >= 0) {
    // Exact when frame headers carry no parameters, which is the usual case.
    const int64_t per_frame =
        static_cast<int64_t>(FrameBytes(info_.format, info_.width, info_.height)) + 6;
    info_.frame_count = (file_.size() - static_cast<int64_t>(line.size()) - 1) / per_frame;
  }
}

bool Y4mReader::Read(Frame& frame) {
  std::string line;
  bool cut = false;
  const int64_t number = frames_read_ + 1;
  if (!ReadLine(file_, line, cut)) return false;
  if (cut || line.compare(0, 5, "FRAME") != 0 || (line.size() > 5 && line[5] != ' ')) {
    Fail(file_.path(), "frame " + std::to_string(number) +
                           ": no FRAME header where one was due (truncated or corrupt frame)");
  }
  // What the file still holds is checked before the frame is allocated: a
  // header may claim a picture far larger than the file.
  const std::size_t bytes = FrameBytes(info_.format, info_.width, info_.height);
  const int64_t left = file_.Remaining();
  if (left >= 0 && left < static_cast<int64_t>(bytes)) {
    Fail(file_.path(), "truncated frame " + std::to_string(number) + ": " + std::to_string(left) +
                           " of " + std::to_string(bytes) + " bytes");
  }
  frame.Reset(info_.format, info_.width, info_.height);
  frame.order = info_.order;
  const std::size_t got = file_.Read(frame.data(), frame.byte_size());
  if (got != frame.byte_size()) {
    Fail(file_.path(), "truncated frame " + std::to_string(number) + ": " + std::to_string(got) +
                           " of " + std::to_string(frame.byte_size()) + " bytes");
  }
  ++frames_read_;
  return true;
}

Y4mWriter::Y4mWriter(const std::string& path, const StreamInfo& info) : file_(path), info_(info) {
  const std::string header = FormatY4mHeader(info);
  file_.Write(header.data(), header.size());
}

void Y4mWriter::Write(const Frame& frame) {
  if (frame.width() != info_.width || frame.height() != info_.height ||
      frame.format() != info_.format) {
    Fail(file_.path(), "size mismatch: frame is " + std::to_string(frame.width()) + "x" +
                           std::to_string(frame.height()) + " " + FormatName(frame.format()) +
                           ", the stream is " + std::to_string(info_.width) + "x" +
                           std::to_string(info_.height) + " " + FormatName(info_.format));
  }
  static const char kFrameLine[] = "FRAME\n";
  file_.Write(kFrameLine, sizeof kFrameLine - 1);
  file_.Write(frame.data(), frame.byte_size());
}

}  // namespace quillon
