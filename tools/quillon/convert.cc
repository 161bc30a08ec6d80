#include "convert.h"

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <utility>

#include "args.h"
#include "errors.h"
#include "png_io.h"
#include "progress.h"

namespace quillon {

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

void OnInterrupt(int) { g_interrupted = 1; }

const std::vector<OptionSpec>& ConvertOptionsTable() {
  static const std::vector<OptionSpec> table = {
      {"in-format", 'f', "FMT", "pixel format of a raw IN"},
      {"in-size", 's', "WxH", "frame size of a raw IN"},
      {"interlace", 0, "ORDER", "fields of a raw IN: progressive (default), tff or bff"},
      {"rate", 'r', "N[/D]", "frames a second of a raw IN, such as 25 or 30000/1001 (default 25)"},
      {"in-container", 0, "TYPE", "read IN as y4m, png or raw whatever its name (such as - for a pipe)"},
      {"out-container", 0, "TYPE", "write OUT as y4m, png or raw whatever its name"},
      {"out-format", 'p', "FMT", "pixel format of OUT (default: IN's, if OUT can hold it)"},
      {"bt709", 0, nullptr, "convert colours with BT.709 instead of BT.601"},
      {"flip", 0, nullptr, "turn every frame upside down"},
      {"size", 0, "WxH", "scale every frame to WxH"},
      {"filter", 0, "NAME", "scaling filter: bilinear (default), mean, 4tap or 8tap"},
      {"overlay", 0, "PNG@X,Y", "lay PNG over every frame by its alpha, top-left at X,Y"},
      {"in-range", 0, "RANGE", "YUV range of IN when the file does not say: limited (default) or full"},
      {"out-range", 0, "RANGE", "YUV range of OUT: limited or full (default: IN's; limited from RGB)"},
      {"fields", 0, "MODE", "split: write each frame as its two fields; compose: pair fields"},
      {"frames", 'n', "N", "stop after N input frames"},
      {"quiet", 'q', nullptr, "draw no progress bar"},
      {"help", 'h', nullptr, "display this help and exit"},
  };
  return table;
}

PixelFormat ParseFormatOption(const std::string& text, const std::string& option) {
  const std::optional<PixelFormat> format = ParseFormat(text);
  if (!format) {
    throw UsageError(option + ": unknown pixel format '" + text + "' (known: " + FormatList() +
                     ")");
  }
  return *format;
}

void ParseOverlay(const std::string& text, ConvertOptions& options) {
  const std::size_t at = text.rfind('@');
  const std::size_t comma = at == std::string::npos ? at : text.find(',', at);
  if (at == std::string::npos || at == 0 || comma == std::string::npos) {
    throw UsageError("--overlay: '" + text + "' is not PNG@X,Y (for example logo.png@32,24)");
  }
  options.overlay_path = text.substr(0, at);
  options.overlay_x = static_cast<int>(
      ParseInteger(text.substr(at + 1, comma - at - 1), "--overlay X", -32768, 32768));
  options.overlay_y =
      static_cast<int>(ParseInteger(text.substr(comma + 1), "--overlay Y", -32768, 32768));
}

ConvertOptions ToOptions(const ParsedArgs& args) {
  ConvertOptions options;
  if (auto v = args.Value("in-format")) options.raw.format = ParseFormatOption(*v, "--in-format");
  if (auto v = args.Value("in-size")) {
    ParseSize(*v, "--in-size", options.raw.width, options.raw.height);
  }
  if (auto v = args.Value("interlace")) {
    if (*v == "progressive") {
      options.raw.order = FieldOrder::kProgressive;
    } else if (*v == "tff") {
      options.raw.order = FieldOrder::kTopFirst;
    } else if (*v == "bff") {
      options.raw.order = FieldOrder::kBottomFirst;
    } else {
      throw UsageError("--interlace: '" + *v + "' is not progressive, tff or bff");
    }
  }
  if (auto v = args.Value("rate")) {
    const std::size_t slash = v->find('/');
    options.raw.rate_num =
        static_cast<int>(ParseInteger(v->substr(0, slash), "--rate", 1, INT32_MAX));
    options.raw.rate_den = slash == std::string::npos
                               ? 1
                               : static_cast<int>(ParseInteger(v->substr(slash + 1), "--rate",
                                                               1, INT32_MAX));
  }
  if (auto v = args.Value("out-format")) options.out_format = ParseFormatOption(*v, "--out-format");
  options.bt709 = args.Has("bt709");
  options.flip = args.Has("flip");
  if (auto v = args.Value("size")) ParseSize(*v, "--size", options.width, options.height);
  if (auto v = args.Value("filter")) {
    const std::optional<ScaleFilter> filter = ParseScaleFilter(*v);
    if (!filter) throw UsageError("--filter: '" + *v + "' is not bilinear, mean, 4tap or 8tap");
    options.filter = *filter;
    if (options.width == 0) throw UsageError("--filter: has no effect without --size");
  }
  if (auto v = args.Value("overlay")) ParseOverlay(*v, options);
  auto range = [&](const char* option) -> ColorRange {
    const std::optional<std::string> v = args.Value(option);
    if (!v) return ColorRange::kUnknown;
    if (*v == "full") return ColorRange::kFull;
    if (*v == "limited") return ColorRange::kLimited;
    throw UsageError(std::string("--") + option + ": '" + *v + "' is not full or limited");
  };
  if (const ColorRange r = range("in-range"); r != ColorRange::kUnknown) options.in_range = r;
  options.out_range = range("out-range");
  auto container = [&](const char* option) -> std::optional<Container> {
    const std::optional<std::string> v = args.Value(option);
    if (!v) return std::nullopt;
    const std::optional<Container> c = ParseContainer(*v);
    if (!c) throw UsageError(std::string("--") + option + ": '" + *v + "' is not y4m, png or raw");
    return c;
  };
  options.in_container = container("in-container");
  options.out_container = container("out-container");
  if (auto v = args.Value("fields")) {
    if (*v == "split") {
      options.fields = FieldMode::kSplit;
    } else if (*v == "compose") {
      options.fields = FieldMode::kCompose;
    } else {
      throw UsageError("--fields: '" + *v + "' is not split or compose");
    }
  }
  if (auto v = args.Value("frames")) options.max_frames = ParseInteger(*v, "--frames", 1, 1L << 40);
  options.quiet = args.Has("quiet");
  return options;
}

// OUT keeps IN's format where it can; otherwise Y4M gets the YUV layout
// nearest IN's and PNG gets RGB, with alpha when IN or an overlay has it.
PixelFormat ChooseOutputFormat(PixelFormat input, Container container,
                               const ConvertOptions& options) {
  if (options.out_format) return *options.out_format;
  if (ContainerHolds(container, input)) return input;
  if (container == Container::kY4m) {
    return input == PixelFormat::kYuyv422 ? PixelFormat::kYuv422p : PixelFormat::kYuv420p;
  }
  const bool alpha = input == PixelFormat::kBgra || input == PixelFormat::kRgba;
  return alpha ? PixelFormat::kRgba : PixelFormat::kRgb24;
}

// Multiplies a pixel aspect ratio by mul_num / mul_den, reduced; 0:0
// ("unknown") stays unknown.
void ScaleAspect(StreamInfo& info, int64_t mul_num, int64_t mul_den) {
  if (info.aspect_num == 0 || info.aspect_den == 0) return;
  int64_t num = info.aspect_num * mul_num;
  int64_t den = info.aspect_den * mul_den;
  const int64_t divisor = std::gcd(num, den);
  num /= divisor;
  den /= divisor;
  if (num > INT32_MAX || den > INT32_MAX) {
    info.aspect_num = info.aspect_den = 0;
    return;
  }
  info.aspect_num = static_cast<int>(num);
  info.aspect_den = static_cast<int>(den);
}

// Multiplies the frame rate by mul_num / mul_den, reduced; a rate that no
// longer fits is refused rather than written wrong.
void ScaleRate(StreamInfo& info, int64_t mul_num, int64_t mul_den) {
  int64_t num = info.rate_num * mul_num;
  int64_t den = info.rate_den * mul_den;
  const int64_t divisor = std::gcd(num, den);
  num /= divisor;
  den /= divisor;
  if (num > INT32_MAX || den > INT32_MAX) Fail("--fields", "the frame rate does not fit");
  info.rate_num = static_cast<int>(num);
  info.rate_den = static_cast<int>(den);
}

std::string SizeText(int width, int height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

}  // namespace

ConvertChain::ConvertChain(const StreamInfo& input, Container output, const ConvertOptions& options,
                           const std::string& output_name)
    : input_(input), options_(options) {
  output_ = input;
  const PixelFormat out_format = ChooseOutputFormat(input.format, output, options);
  if (!ContainerHolds(output, out_format)) {
    Fail("--out-format", std::string("the output file cannot hold ") + FormatName(out_format));
  }
  output_.format = out_format;
  if (IsYuv(input.format)) {
    in_range_ = input.range != ColorRange::kUnknown ? input.range : options.in_range;
  }
  if (IsYuv(out_format)) {
    out_range_ = options.out_range != ColorRange::kUnknown ? options.out_range
                 : IsYuv(input.format)                    ? in_range_
                                                          : ColorRange::kLimited;
  }
  // A range the input did not state and no option named stays unstated.
  const bool assumed = IsYuv(input.format) && input.range == ColorRange::kUnknown &&
                       options.out_range == ColorRange::kUnknown;
  output_.range = assumed ? ColorRange::kUnknown : out_range_;
  std::vector<std::string> needed;
  FieldOrder order = input.order;
  if (options.fields == FieldMode::kCompose) {
    output_.height = input.height * 2;
    output_.frame_count = input.frame_count < 0 ? -1 : input.frame_count / 2;
    output_.order = order = FieldOrder::kTopFirst;
    ScaleAspect(output_, 2, 1);  // a frame's rows are half a field row tall
    ScaleRate(output_, 1, 2);    // two fields make one frame
    needed.push_back("QN_CS_ComposeFields");
  }
  const bool drawn = options.width != 0 || !options.overlay_path.empty();
  yuv_layout_ = !drawn && out_format != input.format && IsYuv(input.format) && IsYuv(out_format);
  through_bgra_ = !yuv_layout_ && (drawn || out_format != input.format);
  if (yuv_layout_) {
    for (const std::string& name : ExportsForYuvLayout(input.format, out_format)) {
      needed.push_back(name);
    }
  }
  const bool library_420 = (through_bgra_ && input.format == PixelFormat::kYuv420p) ||
                           (yuv_layout_ && (input.format == PixelFormat::kYuv420p ||
                                            out_format == PixelFormat::kYuv420p));
  if (through_bgra_) {
    for (const std::string& name : ExportsForToBgra(input.format, order)) needed.push_back(name);
  }
  if (library_420) {
    // The library interpolates interlaced 4:2:0 chroma field by field from
    // at least two chroma rows a field.
    const int rows = options.fields == FieldMode::kCompose ? input.height * 2 : input.height;
    if (order != FieldOrder::kProgressive && (rows % 4 != 0 || rows < 8)) {
      Fail("input",
           "unsupported size: interlaced yuv420p needs a height that is a multiple of 4 "
           "and at least 8, not " +
               std::to_string(rows));
    }
  }
  if (options.width != 0 && order != FieldOrder::kProgressive &&
      (output_.height % 2 != 0 || options.height % 2 != 0)) {
    Fail(output_name, "unsupported size: an interlaced clip is scaled field by field, which needs "
                      "even heights, not " +
                          std::to_string(output_.height) + " to " +
                          std::to_string(options.height));
  }
  if (options.width != 0) {
    // The picture keeps its shape on screen, so the pixels change theirs.
    ScaleAspect(output_, static_cast<int64_t>(output_.width) * options.height,
                static_cast<int64_t>(output_.height) * options.width);
    output_.width = options.width;
    output_.height = options.height;
    needed.push_back(ScaleExport(options.filter));
    if (order != FieldOrder::kProgressive) {
      needed.insert(needed.end(), {"QN_CS_SplitFrame", "QN_CS_ComposeFields"});
    }
  }
  if (!options.overlay_path.empty()) {
    Frame picture;
    ReadPng(options.overlay_path, picture);
    Swizzle(picture, PixelFormat::kBgra, overlay_);
    needed.push_back("QN_BitBlt");
  }
  if (through_bgra_) {
    for (const std::string& name : ExportsForFromBgra(out_format)) needed.push_back(name);
  }
  std::string problem = CheckSize(out_format, output_.width, output_.height);
  if (!problem.empty()) Fail(output_name, "unsupported size: " + problem);
  if (options.fields == FieldMode::kSplit) {
    problem = CheckSplit(out_format, output_.height);
    if (!problem.empty()) Fail(output_name, "unsupported size: " + problem);
    output_.height /= 2;
    output_.order = FieldOrder::kProgressive;
    ScaleAspect(output_, 1, 2);
    ScaleRate(output_, 2, 1);  // the field rate: the clip keeps its duration
    output_.frame_count = input.frame_count < 0 ? -1 : input.frame_count * 2;
    needed.push_back("QN_CS_SplitFrame");
  }
  for (const std::string& name : needed) {
    if (!LibraryHas(name)) {
      Fail(name,
           "needed for this conversion, but this build of the QuillonBufferOperaU library "
           "does not have it yet");
    }
  }
}

void ConvertChain::Push(const Frame& frame, const std::function<void(const Frame&)>& emit) {
  if (frame.width() != input_.width || frame.height() != input_.height) {
    Fail("input", "size mismatch: frame is " + SizeText(frame.width(), frame.height()) +
                      ", the stream is " + SizeText(input_.width, input_.height));
  }
  if (options_.fields != FieldMode::kCompose) {
    Process(frame, emit);
    return;
  }
  if (!have_top_) {
    top_.Reset(frame.format(), frame.width(), frame.height());
    std::copy(frame.data(), frame.data() + frame.byte_size(), top_.data());
    have_top_ = true;
    return;
  }
  have_top_ = false;
  ComposeFields(top_, frame, composed_);
  composed_.order = FieldOrder::kTopFirst;
  Process(composed_, emit);
}

void ConvertChain::Process(const Frame& frame, const std::function<void(const Frame&)>& emit) {
  Frame* current = &converted_;
  // The library converts full-range YUV: a limited input is expanded
  // before the conversion to BGRA and a limited output compressed after
  // it; between YUV formats the range changes only when asked.
  if (yuv_layout_) {
    ConvertYuvLayout(frame, output_.format, converted_);
    ConvertRange(converted_, in_range_, out_range_);
  } else if (through_bgra_) {
    const Frame* source = &frame;
    if (in_range_ == ColorRange::kLimited) {
      Swizzle(frame, frame.format(), full_range_);
      ConvertRange(full_range_, ColorRange::kLimited, ColorRange::kFull);
      source = &full_range_;
    }
    ToBgra(*source, bgra_, options_.bt709);
    current = &bgra_;
  } else {
    Swizzle(frame, frame.format(), converted_);  // a plain copy, to work in place
    ConvertRange(converted_, in_range_, out_range_);
  }
  if (options_.flip) FlipVertically(*current);
  if (options_.width != 0) {
    if (current->order == FieldOrder::kProgressive) {
      scaled_.Reset(PixelFormat::kBgra, options_.width, options_.height);
      Scale(*current, scaled_, options_.filter);
    } else {
      // Each field on its own: scaling the whole frame would mix the two
      // moments a frame's fields were taken at (or drop one of them).
      SplitFields(*current, field_a_, field_b_);
      scaled_a_.Reset(PixelFormat::kBgra, options_.width, options_.height / 2);
      scaled_b_.Reset(PixelFormat::kBgra, options_.width, options_.height / 2);
      Scale(field_a_, scaled_a_, options_.filter);
      Scale(field_b_, scaled_b_, options_.filter);
      ComposeFields(scaled_a_, scaled_b_, scaled_);
    }
    scaled_.order = current->order;
    current = &scaled_;
  }
  if (!options_.overlay_path.empty()) {
    Overlay(*current, overlay_, options_.overlay_x, options_.overlay_y);
  }
  if (through_bgra_) {
    FromBgra(*current, output_.format, converted_, options_.bt709);
    if (out_range_ == ColorRange::kLimited) {
      ConvertRange(converted_, ColorRange::kFull, ColorRange::kLimited);
    }
    current = &converted_;
  }
  if (options_.fields != FieldMode::kSplit) {
    emit(*current);
    return;
  }
  SplitFields(*current, field_a_, field_b_);
  // Fields go out in the order they were shot.
  const bool bottom_first = current->order == FieldOrder::kBottomFirst;
  emit(bottom_first ? field_b_ : field_a_);
  emit(bottom_first ? field_a_ : field_b_);
}

int RunConvert(const std::vector<std::string>& args) {
  const ParsedArgs parsed = ParseArgs(args, ConvertOptionsTable(), "convert");
  if (parsed.Has("help")) {
    std::fputs(ConvertHelp().c_str(), stdout);
    return 0;
  }
  if (parsed.positional.size() != 2) {
    throw UsageError(parsed.positional.size() < 2
                         ? "convert: needs IN and OUT"
                         : "convert: too many file names (IN and OUT only)");
  }
  const ConvertOptions options = ToOptions(parsed);
  const std::string& in_path = parsed.positional[0];
  const std::string& out_path = parsed.positional[1];
  if (in_path == out_path && in_path != "-") {
    throw UsageError("convert: IN and OUT are the same file");
  }
  std::unique_ptr<FrameSource> source = OpenSource(in_path, options.raw, options.in_container);
  ConvertChain chain(source->info(), options.out_container.value_or(ContainerFor(out_path)),
                     options, out_path);
  std::unique_ptr<FrameSink> sink = OpenSink(out_path, chain.output_info(), options.out_container);

  int64_t total = source->info().frame_count;
  if (options.max_frames >= 0 && (total < 0 || total > options.max_frames)) {
    total = options.max_frames;
  }
  g_interrupted = 0;
  auto* previous = std::signal(SIGINT, OnInterrupt);
  Progress progress(total, !options.quiet && StderrIsTerminal());
  Frame frame;
  int64_t done = 0;
  const auto write = [&](const Frame& out) { sink->Write(out); };
  while (options.max_frames < 0 || done < options.max_frames) {
    if (g_interrupted) {
      std::signal(SIGINT, previous);
      Fail(out_path, "interrupted; the output was not written");
    }
    if (!source->Read(frame)) break;
    chain.Push(frame, write);
    ++done;
    progress.Update(done);
  }
  std::signal(SIGINT, previous);
  if (done == 0) Fail(in_path, "holds no frame");
  sink->Finish();
  progress.Finish(done);
  if (chain.waiting_for_field()) {
    std::fprintf(stderr,
                 "quillon: %s: odd number of fields; the last one had no partner and "
                 "was left out\n",
                 in_path.c_str());
  }
  return 0;
}

std::string ConvertHelp() {
  return "Usage: quillon convert [OPTION]... IN OUT\n"
         "Read frames from IN, change them and write them to OUT, one frame at a time.\n"
         "\n"
         "Files are told apart by name: *.y4m is YUV4MPEG2 (4:2:0 or 4:2:2, progressive or\n"
         "interlaced), *.png a PNG picture (f%04d.png a numbered sequence), anything else\n"
         "raw frames, whose format and size -f and -s give. '-' is standard input or output.\n"
         "Pixel formats: " +
         FormatList() +
         ".\n"
         "\n"
         "Options:\n" +
         OptionHelp(ConvertOptionsTable()) +
         "\n"
         "Frames are converted to BGRA for scaling and overlays and when the output format\n"
         "differs; between YUV formats only the layout and chroma change, luma is kept\n"
         "exactly. Interlaced 4:2:0 keeps its chroma by field. A regular OUT is written\n"
         "under a temporary name and renamed when complete; a device, a FIFO and '-' are\n"
         "written straight through, and a symbolic link is followed to its file.\n"
         "\n"
         "Examples:\n"
         "  quillon convert in.y4m out%04d.png --bt709\n"
         "  quillon convert -f yuyv422 -s 720x576 --interlace tff cam.yuv cam.y4m\n"
         "  quillon convert in.y4m small.y4m --size 640x360 --filter mean\n"
         "  quillon convert in.y4m fields.y4m --fields split\n";
}

}  // namespace quillon
