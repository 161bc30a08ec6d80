// quillon convert: reads frames, runs the chosen operations on each and
// writes the result, one frame in memory at a time.
#ifndef QUILLON_TOOL_CONVERT_H_
#define QUILLON_TOOL_CONVERT_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frame_io.h"
#include "pixel_format.h"
#include "pixel_ops.h"

namespace quillon {

enum class FieldMode { kNone, kSplit, kCompose };

struct ConvertOptions {
  RawInputSpec raw;
  std::optional<PixelFormat> out_format;
  bool bt709 = false;
  bool flip = false;
  int width = 0;  // 0: keep the size
  int height = 0;
  ScaleFilter filter = ScaleFilter::kBilinear;
  std::string overlay_path;  // "" for none
  int overlay_x = 0;
  int overlay_y = 0;
  FieldMode fields = FieldMode::kNone;
  // YUV range of an input whose file does not say (raw, untagged Y4M), and
  // of a YUV output (unknown: the input's, or limited after RGB).
  ColorRange in_range = ColorRange::kLimited;
  ColorRange out_range = ColorRange::kUnknown;
  // File formats chosen by option instead of by name ("-" is raw unless told).
  std::optional<Container> in_container, out_container;
  int64_t max_frames = -1;  // input frames; -1 for all
  bool quiet = false;
};

// The per-frame chain, apart from the files: field composing, conversion
// to BGRA when anything needs it, flip, scale, overlay, conversion to the
// output format, field splitting.
class ConvertChain {
 public:
  // Checks every option against the input stream before any frame is read;
  // failures about the output name `output_name`.
  ConvertChain(const StreamInfo& input, Container output, const ConvertOptions& options,
               const std::string& output_name = "output");

  const StreamInfo& output_info() const { return output_; }

  // Feeds one input frame; `emit` receives each finished output frame.
  void Push(const Frame& frame, const std::function<void(const Frame&)>& emit);
  // True when a composed output is waiting for its second field.
  bool waiting_for_field() const { return have_top_; }

 private:
  void Process(const Frame& frame, const std::function<void(const Frame&)>& emit);

  StreamInfo input_;
  StreamInfo output_;
  ConvertOptions options_;
  bool through_bgra_ = false;
  bool yuv_layout_ = false;  // YUV to YUV with nothing drawn: luma kept exactly
  ColorRange in_range_ = ColorRange::kUnknown;   // kUnknown for RGB
  ColorRange out_range_ = ColorRange::kUnknown;  // kUnknown for RGB
  Frame full_range_;  // a limited-range input expanded for the BGRA conversion
  Frame overlay_;
  Frame top_;
  bool have_top_ = false;
  Frame composed_;
  Frame bgra_;
  Frame scaled_;
  Frame converted_;
  Frame field_a_;
  Frame field_b_;
  Frame scaled_a_;  // an interlaced frame's fields, scaled one by one
  Frame scaled_b_;
};

// Parses `args` (after the word "convert") and runs the command; returns
// the exit status.
int RunConvert(const std::vector<std::string>& args);

std::string ConvertHelp();

}  // namespace quillon

#endif  // QUILLON_TOOL_CONVERT_H_
