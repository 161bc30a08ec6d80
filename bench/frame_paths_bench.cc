// The per-frame paths of a player beside the fastest peer doing the same
// job, in one run: 1920x1080 and 3840x2160, hot (the same frame each
// iteration) and cold (frames rotating through a pool far larger than the
// last-level cache, as many cameras' frames do). Names are
//   Frame/<job>/<size>/<hot|cold>/<side>
// and bench_main prints the table of peer time / our time at the end.
// Our side runs at the best level of this machine (or QBO_CPU's).
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"
#include "frame/kernel_table.h"

#if defined(QBO_BENCH_LIBYUV)
#include <libyuv/convert.h>
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from.h>
#include <libyuv/planar_functions.h>
#include <libyuv/row.h>
#include <libyuv/scale_argb.h>
#endif

#if defined(QBO_BENCH_VELAVID_PATH)
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace qbo::bench {
namespace {

#if defined(QBO_BENCH_VELAVID_PATH)
using VelaVidEntry = intptr_t (*)(intptr_t, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                                  intptr_t, intptr_t, intptr_t, intptr_t, intptr_t);

// ConvertEntries[21] of a private copy of the VelaVid module whose pool has
// `threads` threads: each copy is a module of its own, and a pool reads
// VELAVID_THREADS when its first large frame starts it.
VelaVidEntry VelaVidYuyvToBgra(int threads) {
  namespace fs = std::filesystem;
  const fs::path copy =
      fs::temp_directory_path() /
      ("qbo_bench_velavid_" + std::to_string(getpid()) + "_" + std::to_string(threads) + ".so");
  fs::copy_file(QBO_BENCH_VELAVID_PATH, copy, fs::copy_options::overwrite_existing);
  void* module = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  fs::remove(copy);
  auto get = module ? reinterpret_cast<void* (*)()>(dlsym(module, "VLV_GetAPIStuPtr")) : nullptr;
  if (!get) std::abort();
  const auto entry = reinterpret_cast<VelaVidEntry>(static_cast<void* const* const*>(get())[1][21]);
  setenv("VELAVID_THREADS", std::to_string(threads).c_str(), 1);
  std::vector<uint8_t> yuyv(2 * 2 * 512), bgra(4 * 2 * 512);
  entry(reinterpret_cast<intptr_t>(bgra.data()), 8, reinterpret_cast<intptr_t>(yuyv.data()), 4, 2,
        512, 1, 1, 0, 255, 0);
  return entry;
}
#endif

// A picture size; a job's planes are 64-byte aligned with packed rows.
struct Shape {
  int w, h;
};

// One side of a job: given the frame index's planes, does the work once.
using Work = std::function<void(uint8_t* const* planes)>;

struct Job {
  const char* name;
  // Plane sizes in bytes for a w x h picture.
  std::function<std::vector<std::size_t>(Shape)> planes;
  // Our call, then the peer's; null when the peer is not built in.
  std::function<Work(Shape)> ours, peer;
  const char* peer_name;
  // The last plane is the destination; opaque (alpha 255) when set.
  bool opaque_dst = false;
};

// Bytes of pool a cold run rotates through: far past any one core's cache.
constexpr std::size_t kColdBytes = std::size_t{256} << 20;

void Run(benchmark::State& state, const Job& job, Shape s, bool cold, bool ours) {
  const std::vector<std::size_t> sizes = job.planes(s);
  std::size_t frame = 0;
  for (std::size_t b : sizes) frame += b;
  const int pool = cold ? static_cast<int>((kColdBytes + frame - 1) / frame) : 1;
  std::vector<std::unique_ptr<Frame>> planes;
  for (std::size_t b : sizes) planes.push_back(std::make_unique<Frame>(b * pool));
  // Alpha that is neither all clear nor all opaque, for the blends.
  for (auto& p : planes) {
    const bool opaque = job.opaque_dst && p == planes.back();
    for (std::size_t i = 3; i < p->size(); i += 4) {
      p->data()[i] = opaque ? 255 : static_cast<uint8_t>(i * 37 >> 4);
    }
  }
  const Work work = (ours ? job.ours : job.peer)(s);
  std::vector<uint8_t*> at(sizes.size());
  int i = 0;
  for (auto _ : state) {
    for (std::size_t p = 0; p < sizes.size(); ++p) at[p] = planes[p]->data() + sizes[p] * i;
    work(at.data());
    benchmark::ClobberMemory();
    i = (i + 1) % pool;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * frame));
}

std::size_t Px(Shape s) { return static_cast<std::size_t>(s.w) * s.h; }

std::vector<Job> Jobs() {
  using P = uint8_t* const*;
  std::vector<Job> jobs = {
      {"copy", [](Shape s) { return std::vector<std::size_t>{4 * Px(s), 4 * Px(s)}; },
       [](Shape s) -> Work {
         return [s](P p) { QN_Memcpy(p[1], p[0], static_cast<int32_t>(4 * Px(s))); };
       },
       [](Shape s) -> Work { return [s](P p) { std::memcpy(p[1], p[0], 4 * Px(s)); }; },
       "memcpy"},
      {"fill", [](Shape s) { return std::vector<std::size_t>{4 * Px(s)}; },
       [](Shape s) -> Work {
         return [s](P p) { QN_MemsetDWORD(p[0], 0xFF102030u, static_cast<int32_t>(Px(s))); };
       },
       [](Shape s) -> Work { return [s](P p) { std::memset(p[0], 0x5A, 4 * Px(s)); }; },
       "memset"},
  };
#if defined(QBO_BENCH_LIBYUV)
  auto two_thirds = [](Shape s) -> Shape { return {s.w * 2 / 3, s.h * 2 / 3}; };
  auto yuyv_bgra = [](int bt709) -> Job {
    return {bt709 ? "yuyv->bgra 709" : "yuyv->bgra 601",
            [](Shape s) { return std::vector<std::size_t>{2 * Px(s), 4 * Px(s)}; },
            [bt709](Shape s) -> Work {
              return [s, bt709](P p) {
                QN_CS_YUYV2BGRA_Frame(p[1], 4 * s.w, p[0], 2 * s.w, s.w, s.h, bt709, 0);
              };
            },
            // Full-range constants through the row libyuv's frame function
            // would pick; its frame entry has no full-range matrix form.
            [bt709](Shape s) -> Work {
              const libyuv::YuvConstants* k =
                  bt709 ? &libyuv::kYuvF709Constants : &libyuv::kYuvJPEGConstants;
              return [s, k](P p) {
                for (int y = 0; y < s.h; ++y) {
                  libyuv::YUY2ToARGBRow_AVX2(p[0] + std::size_t{2} * s.w * y,
                                             p[1] + std::size_t{4} * s.w * y, k, s.w);
                }
              };
            },
            "libyuv YUY2ToARGBRow_AVX2"};
  };
  jobs.push_back(yuyv_bgra(0));
  jobs.push_back(yuyv_bgra(1));
#if defined(QBO_BENCH_VELAVID_PATH)
  // The same call handed to the VelaVid module (ours) with one worker or
  // two, beside libyuv on one thread.
  for (int threads : {1, 2}) {
    Job job = yuyv_bgra(0);
    job.name = threads == 1 ? "yuyv->bgra 601 VelaVid 1 thread" : "yuyv->bgra 601 VelaVid 2 threads";
    job.ours = [threads](Shape s) -> Work {
      static const VelaVidEntry entries[2] = {VelaVidYuyvToBgra(1), VelaVidYuyvToBgra(2)};
      const VelaVidEntry entry = entries[threads - 1];
      return [s, entry](P p) {
        entry(reinterpret_cast<intptr_t>(p[1]), 4 * s.w, reinterpret_cast<intptr_t>(p[0]),
              2 * s.w, s.w, s.h, 1, 1, 0, 255, 0);
      };
    };
    jobs.push_back(job);
  }
#endif
  auto i420 = [](Shape s) {
    return std::vector<std::size_t>{Px(s), Px(s) / 4, Px(s) / 4, 4 * Px(s)};
  };
  jobs.push_back({"420->bgra 601", i420,
                  [](Shape s) -> Work {
                    return [s](P p) {
                      QN_CS_YUV420_BGRA_Frame(p[3], 4 * s.w, p[0], s.w, p[1], s.w / 2, p[2],
                                              s.w / 2, s.w, s.h, 0, 0);
                    };
                  },
                  [](Shape s) -> Work {
                    return [s](P p) {
                      libyuv::I420ToARGBMatrix(p[0], s.w, p[1], s.w / 2, p[2], s.w / 2, p[3],
                                               4 * s.w, &libyuv::kYuvJPEGConstants, s.w, s.h);
                    };
                  },
                  "libyuv I420ToARGBMatrix (J)"});
  auto i420_yuyv = [](Shape s) {
    return std::vector<std::size_t>{Px(s), Px(s) / 4, Px(s) / 4, 2 * Px(s)};
  };
  jobs.push_back({"420->yuyv", i420_yuyv,
                  [](Shape s) -> Work {
                    return [s](P p) {
                      QN_CS_420_422_YUVFrame(p[3], 2 * s.w, p[0], s.w, p[1], s.w / 2, p[2],
                                             s.w / 2, s.w, s.h);
                    };
                  },
                  [](Shape s) -> Work {
                    return [s](P p) {
                      libyuv::I420ToYUY2(p[0], s.w, p[1], s.w / 2, p[2], s.w / 2, p[3], 2 * s.w,
                                         s.w, s.h);
                    };
                  },
                  "libyuv I420ToYUY2"});
  // libyuv's job itself, each chroma row repeated for two frame rows, done
  // with the interleaving row our frame path uses where chroma is taken
  // unchanged: what the interpolation of ours costs beside it.
  jobs.push_back({"420->yuyv repeated chroma", i420_yuyv,
                  [](Shape s) -> Work {
                    return [s](P p) {
                      const InterleaveYuyvRowFn row = Kernels().yuvlayout.interleave_yuyv;
                      for (int y = 0; y < s.h; ++y) {
                        const std::size_t c = static_cast<std::size_t>(y / 2) * (s.w / 2);
                        row(p[3] + std::size_t{2} * s.w * y, p[0] + std::size_t{1} * s.w * y,
                            p[1] + c, p[2] + c, s.w);
                      }
                    };
                  },
                  [](Shape s) -> Work {
                    return [s](P p) {
                      libyuv::I420ToYUY2(p[0], s.w, p[1], s.w / 2, p[2], s.w / 2, p[3], 2 * s.w,
                                         s.w, s.h);
                    };
                  },
                  "libyuv I420ToYUY2"});
  jobs.push_back({"yuyv->420", i420_yuyv,
                  [](Shape s) -> Work {
                    return [s](P p) {
                      QN_CS_422_420_YUVFrame(p[0], s.w, p[1], s.w / 2, p[2], s.w / 2, p[3],
                                             2 * s.w, s.w, s.h);
                    };
                  },
                  [](Shape s) -> Work {
                    return [s](P p) {
                      libyuv::YUY2ToI420(p[3], 2 * s.w, p[0], s.w, p[1], s.w / 2, p[2], s.w / 2,
                                         s.w, s.h);
                    };
                  },
                  "libyuv YUY2ToI420"});
  // Over a translucent destination, and over an opaque one (a picture
  // placed on a video frame), where the result's alpha needs no quotient.
  for (bool opaque : {false, true}) {
    jobs.push_back({opaque ? "over opaque" : "over",
                    [](Shape s) { return std::vector<std::size_t>{4 * Px(s), 4 * Px(s)}; },
                    [](Shape s) -> Work {
                      return [s](P p) {
                        QN_BitBlt(p[1], 0, 0, s.w, s.h, s.w, s.h, p[0], 0, 0, s.w, s.h, s.w,
                                  s.h, 0, 0);
                      };
                    },
                    [](Shape s) -> Work {
                      return [s](P p) {
                        libyuv::ARGBBlend(p[0], 4 * s.w, p[1], 4 * s.w, p[1], 4 * s.w, s.w, s.h);
                      };
                    },
                    "libyuv ARGBBlend", opaque});
  }
  // Bilinear stretches: down to two thirds, and up from two thirds.
  for (bool down : {true, false}) {
    auto from = [=](Shape s) { return down ? s : two_thirds(s); };
    auto to = [=](Shape s) { return down ? two_thirds(s) : s; };
    jobs.push_back(
        {down ? "bilinear down 2/3" : "bilinear up 3/2",
         [=](Shape s) { return std::vector<std::size_t>{4 * Px(from(s)), 4 * Px(to(s))}; },
         [=](Shape s) -> Work {
           const Shape a = from(s), b = to(s);
           return [a, b](P p) {
             QN_StretchBlt(p[1], 0, 0, b.w, b.h, b.w, b.h, p[0], 0, 0, a.w, a.h, a.w, a.h, 1, 0);
           };
         },
         [=](Shape s) -> Work {
           const Shape a = from(s), b = to(s);
           return [a, b](P p) {
             libyuv::ARGBScale(p[0], 4 * a.w, a.w, a.h, p[1], 4 * b.w, b.w, b.h,
                               libyuv::kFilterBilinear);
           };
         },
         "libyuv ARGBScale bilinear"});
  }
#endif
  return jobs;
}

// Registered at start-up, one benchmark per job, size, temperature and side.
const bool kRegistered = [] {
  static const std::vector<Job> jobs = Jobs();
  const std::pair<const char*, Shape> sizes[] = {{"1080p", {1920, 1080}}, {"2160p", {3840, 2160}}};
  for (const Job& job : jobs) {
    for (const auto& [size_name, shape] : sizes) {
      for (bool cold : {false, true}) {
        for (bool ours : {true, false}) {
          const std::string name = std::string("Frame/") + job.name + "/" + size_name + "/" +
                                   (cold ? "cold" : "hot") + "/" + (ours ? "ours" : job.peer_name);
          const Shape s = shape;
          benchmark::RegisterBenchmark(name.c_str(), [&job, s, cold, ours](benchmark::State& st) {
            Run(st, job, s, cold, ours);
          })->Unit(benchmark::kMicrosecond)->UseRealTime();
        }
      }
    }
  }
  return true;
}();

}  // namespace
}  // namespace qbo::bench
