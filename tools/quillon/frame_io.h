// Opening streams of frames by file name: "*.y4m" is YUV4MPEG2, "*.png" a
// PNG picture (a name with a printf number such as "f%04d.png" is a
// numbered sequence), anything else raw frames whose format and size the
// user gives.
#ifndef QUILLON_TOOL_FRAME_IO_H_
#define QUILLON_TOOL_FRAME_IO_H_

#include <memory>
#include <optional>
#include <string>

#include "pixel_format.h"

namespace quillon {

enum class Container { kY4m, kPng, kRaw };

Container ContainerFor(const std::string& path);

class FrameSource {
 public:
  virtual ~FrameSource() = default;
  virtual const StreamInfo& info() const = 0;
  // Fills `frame`; false at the end of the stream.
  virtual bool Read(Frame& frame) = 0;
};

class FrameSink {
 public:
  virtual ~FrameSink() = default;
  virtual void Write(const Frame& frame) = 0;
  // Puts finished files in place; without it nothing is left behind.
  virtual void Finish() = 0;
};

// What the user says about a raw input (a Y4M or PNG input says it itself).
struct RawInputSpec {
  std::optional<PixelFormat> format;
  int width = 0;
  int height = 0;
  FieldOrder order = FieldOrder::kProgressive;
  int rate_num = 25, rate_den = 1;  // frames a second, as num / den
};

// `container` overrides the name (a Y4M stream on standard input, say).
std::unique_ptr<FrameSource> OpenSource(const std::string& path, const RawInputSpec& raw,
                                        std::optional<Container> container = std::nullopt);

// `info` gives the size and format of every frame that will be written.
std::unique_ptr<FrameSink> OpenSink(const std::string& path, const StreamInfo& info,
                                    std::optional<Container> container = std::nullopt);
// "y4m", "png" or "raw".
std::optional<Container> ParseContainer(const std::string& name);

// The formats a container can hold; the first is the one to convert to.
bool ContainerHolds(Container container, PixelFormat format);

// Expands a numbered-sequence name ("f%04d.png", 7) to "f0007.png".
std::string SequenceName(const std::string& pattern, int64_t number);
bool IsSequencePattern(const std::string& path);

}  // namespace quillon

#endif  // QUILLON_TOOL_FRAME_IO_H_
