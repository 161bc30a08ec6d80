#include "frame_io.h"

#include <sys/stat.h>

#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "errors.h"
#include "files.h"
#include "png_io.h"
#include "y4m_io.h"

namespace quillon {

namespace {

bool EndsWith(std::string_view text, std::string_view tail) {
  if (text.size() < tail.size()) return false;
  for (std::size_t i = 0; i < tail.size(); ++i) {
    char c = text[text.size() - tail.size() + i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != tail[i]) return false;
  }
  return true;
}

bool Exists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

std::string SizeText(int width, int height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

class Y4mSource : public FrameSource {
 public:
  explicit Y4mSource(const std::string& path) : reader_(path) {}
  const StreamInfo& info() const override { return reader_.info(); }
  bool Read(Frame& frame) override { return reader_.Read(frame); }

 private:
  Y4mReader reader_;
};

class RawSource : public FrameSource {
 public:
  RawSource(const std::string& path, const RawInputSpec& raw) : file_(path) {
    info_.format = *raw.format;
    info_.width = raw.width;
    info_.height = raw.height;
    info_.order = raw.order;
    info_.rate_num = raw.rate_num;
    info_.rate_den = raw.rate_den;
    frame_bytes_ = FrameBytes(info_.format, info_.width, info_.height);
    if (file_.size() >= 0) {
      info_.frame_count = file_.size() / static_cast<int64_t>(frame_bytes_);
    }
  }
  const StreamInfo& info() const override { return info_; }
  bool Read(Frame& frame) override {
    // A file's remaining size is checked before the frame is allocated.
    const int64_t left = file_.Remaining();
    if (left == 0) return false;
    std::size_t got = static_cast<std::size_t>(left);  // a short rest is reported unread
    if (left < 0 || got >= frame_bytes_) {
      frame.Reset(info_.format, info_.width, info_.height);
      frame.order = info_.order;
      got = file_.Read(frame.data(), frame_bytes_);
      if (got == 0) return false;
    }
    ++frames_read_;
    if (got != frame_bytes_) {
      Fail(file_.path(), "truncated frame " + std::to_string(frames_read_) + ": " +
                             std::to_string(got) + " of " + std::to_string(frame_bytes_) +
                             " bytes of a " + SizeText(info_.width, info_.height) + " " +
                             FormatName(info_.format) + " frame");
    }
    return true;
  }

 private:
  InputFile file_;
  StreamInfo info_;
  std::size_t frame_bytes_ = 0;
  int64_t frames_read_ = 0;
};

class PngSource : public FrameSource {
 public:
  explicit PngSource(const std::string& path) : path_(path) {
    if (IsSequencePattern(path)) {
      // Sequences may be numbered from 0 or from 1.
      first_ = Exists(SequenceName(path, 0)) ? 0 : 1;
      int64_t count = 0;
      while (Exists(SequenceName(path, first_ + count))) ++count;
      if (count == 0) Fail(path, "no file of this numbered sequence exists");
      info_.frame_count = count;
    } else {
      info_.frame_count = 1;
    }
    // Read the first picture now so the stream's size and format are known.
    ReadPng(NameOf(0), first_frame_);
    info_.format = first_frame_.format();
    info_.width = first_frame_.width();
    info_.height = first_frame_.height();
  }
  const StreamInfo& info() const override { return info_; }
  bool Read(Frame& frame) override {
    if (next_ >= info_.frame_count) return false;
    const std::string name = NameOf(next_);
    if (next_ == 0) {
      std::swap(frame, first_frame_);
    } else {
      ReadPng(name, frame);
    }
    ++next_;
    if (frame.width() != info_.width || frame.height() != info_.height) {
      Fail(name, "size mismatch: " + SizeText(frame.width(), frame.height()) +
                     ", the first picture of the sequence is " +
                     SizeText(info_.width, info_.height));
    }
    if (frame.format() != info_.format) {
      // A sequence may mix pictures with and without alpha; keep the first's.
      Fail(name, std::string("picture is ") + FormatName(frame.format()) +
                     ", the first picture of the sequence is " + FormatName(info_.format));
    }
    return true;
  }

 private:
  std::string NameOf(int64_t index) const {
    return IsSequencePattern(path_) ? SequenceName(path_, first_ + index) : path_;
  }
  std::string path_;
  StreamInfo info_;
  Frame first_frame_;
  int64_t first_ = 0;
  int64_t next_ = 0;
};

class Y4mSink : public FrameSink {
 public:
  Y4mSink(const std::string& path, const StreamInfo& info) : writer_(path, info) {}
  void Write(const Frame& frame) override { writer_.Write(frame); }
  void Finish() override { writer_.Finish(); }

 private:
  Y4mWriter writer_;
};

class RawSink : public FrameSink {
 public:
  RawSink(const std::string& path, const StreamInfo& info) : file_(path), info_(info) {}
  void Write(const Frame& frame) override {
    if (frame.width() != info_.width || frame.height() != info_.height ||
        frame.format() != info_.format) {
      Fail(file_.path(), "size mismatch: frame is " + SizeText(frame.width(), frame.height()) +
                             ", the stream is " + SizeText(info_.width, info_.height));
    }
    file_.Write(frame.data(), frame.byte_size());
  }
  void Finish() override { file_.Commit(); }

 private:
  OutputFile file_;
  StreamInfo info_;
};

// Pictures are written under temporary names and all renamed into place by
// Finish(), so a sequence appears whole or not at all. Sequences are
// numbered from 1.
class PngSink : public FrameSink {
 public:
  explicit PngSink(const std::string& path) : path_(path) {}
  ~PngSink() override {
    for (const auto& [temp, final_name] : pending_) std::remove(temp.c_str());
  }
  void Write(const Frame& frame) override {
    const bool sequence = IsSequencePattern(path_);
    if (!sequence && !pending_.empty()) {
      Fail(path_, "a PNG holds one picture; name the output like out%04d.png for several");
    }
    const std::string name =
        sequence ? SequenceName(path_, static_cast<int64_t>(pending_.size()) + 1) : path_;
    const std::string temp = TemporaryNameFor(name);
    pending_.emplace_back(temp, name);
    WritePng(temp, frame);
  }
  void Finish() override {
    for (const auto& [temp, final_name] : pending_) {
      if (std::rename(temp.c_str(), final_name.c_str()) != 0) {
        Fail(final_name, "cannot rename the finished file into place");
      }
    }
    pending_.clear();
  }

 private:
  std::string path_;
  std::vector<std::pair<std::string, std::string>> pending_;
};

}  // namespace

Container ContainerFor(const std::string& path) {
  if (EndsWith(path, ".y4m")) return Container::kY4m;
  if (EndsWith(path, ".png")) return Container::kPng;
  return Container::kRaw;
}

bool IsSequencePattern(const std::string& path) {
  const std::size_t percent = path.find('%');
  if (percent == std::string::npos) return false;
  std::size_t i = percent + 1;
  while (i < path.size() && path[i] >= '0' && path[i] <= '9') ++i;
  return i < path.size() && path[i] == 'd' && path.find('%', i) == std::string::npos;
}

std::string SequenceName(const std::string& pattern, int64_t number) {
  char name[4096];
  std::snprintf(name, sizeof name, pattern.c_str(), static_cast<int>(number));
  return name;
}

bool ContainerHolds(Container container, PixelFormat format) {
  switch (container) {
    case Container::kY4m:
      return format == PixelFormat::kYuv420p || format == PixelFormat::kYuv422p;
    case Container::kPng:
      return !IsYuv(format);
    case Container::kRaw:
      return true;
  }
  return false;
}

std::optional<Container> ParseContainer(const std::string& name) {
  if (name == "y4m") return Container::kY4m;
  if (name == "png") return Container::kPng;
  if (name == "raw") return Container::kRaw;
  return std::nullopt;
}

std::unique_ptr<FrameSource> OpenSource(const std::string& path, const RawInputSpec& raw,
                                        std::optional<Container> container) {
  switch (container.value_or(ContainerFor(path))) {
    case Container::kY4m:
      return std::make_unique<Y4mSource>(path);
    case Container::kPng:
      return std::make_unique<PngSource>(path);
    case Container::kRaw:
      break;
  }
  if (!raw.format || raw.width == 0) {
    Fail(path,
         "unknown format: raw frames need --in-format FMT and --in-size WxH "
         "(or name the file *.y4m or *.png, or give --in-container)");
  }
  const std::string size_problem = CheckSize(*raw.format, raw.width, raw.height);
  if (!size_problem.empty()) Fail(path, "unsupported size: " + size_problem);
  return std::make_unique<RawSource>(path, raw);
}

std::unique_ptr<FrameSink> OpenSink(const std::string& path, const StreamInfo& info,
                                    std::optional<Container> chosen) {
  const Container container = chosen.value_or(ContainerFor(path));
  if (!ContainerHolds(container, info.format)) {
    Fail(path, std::string("cannot hold ") + FormatName(info.format) + " frames");
  }
  if (container == Container::kPng && IsSequencePattern(path) == false &&
      path.find('%') != std::string::npos) {
    Fail(path, "a numbered name takes one %d (such as %04d) and no other %");
  }
  switch (container) {
    case Container::kY4m:
      return std::make_unique<Y4mSink>(path, info);
    case Container::kPng:
      return std::make_unique<PngSink>(path);
    case Container::kRaw:
      break;
  }
  return std::make_unique<RawSink>(path, info);
}

}  // namespace quillon
