#include "cli.h"

#include <cstdio>
#include <new>

#include "convert.h"
#include "demo.h"
#include "errors.h"
#include "pixel_ops.h"

#ifndef QUILLON_VERSION
#define QUILLON_VERSION "0.0.0"
#endif

namespace quillon {

namespace {

struct Command {
  const char* name;
  const char* summary;
  int (*run)(const std::vector<std::string>& args);
  std::string (*help)();
};

const Command kCommands[] = {
    {"convert", "convert, scale, overlay and re-field frames between Y4M, raw and PNG", RunConvert,
     ConvertHelp},
    {"demo", "run the frame chain on a built-in picture, write each stage, time it", RunDemo,
     DemoHelp},
};

const Command* FindCommand(const std::string& name) {
  for (const Command& command : kCommands) {
    if (name == command.name) return &command;
  }
  return nullptr;
}

int Dispatch(const std::vector<std::string>& args) {
  if (args.empty()) throw UsageError("missing command");
  const std::string& first = args[0];
  if (first == "-h" || first == "--help") {
    std::fputs(MainHelp().c_str(), stdout);
    return 0;
  }
  if (first == "-V" || first == "--version") {
    std::fputs(VersionText().c_str(), stdout);
    return 0;
  }
  if (first == "help") {
    if (args.size() == 1) {
      std::fputs(MainHelp().c_str(), stdout);
      return 0;
    }
    const Command* command = FindCommand(args[1]);
    if (command == nullptr) throw UsageError("help: unknown command '" + args[1] + "'");
    std::fputs(command->help().c_str(), stdout);
    return 0;
  }
  const Command* command = FindCommand(first);
  if (command == nullptr) {
    if (!first.empty() && first[0] == '-') throw UsageError("unknown option '" + first + "'");
    throw UsageError("unknown command '" + first + "'");
  }
  return command->run(std::vector<std::string>(args.begin() + 1, args.end()));
}

}  // namespace

std::string MainHelp() {
  std::string help =
      "Usage: quillon COMMAND [OPTION]... [FILE]...\n"
      "       quillon --help | --version\n"
      "Run the pixel-buffer operations of the QuillonBufferOperaU library on video\n"
      "frames and pictures: YUV layouts and colour conversion, alpha blits, stretches,\n"
      "resampling, field splitting.\n"
      "\n"
      "Commands:\n";
  for (const Command& command : kCommands) {
    help += "  " + std::string(command.name) +
            std::string(10 - std::string(command.name).size(), ' ') + command.summary + "\n";
  }
  help +=
      "  help      show the help of a command\n"
      "\n"
      "Options:\n"
      "  -h, --help     display this help and exit\n"
      "  -V, --version  output version information and exit\n"
      "\n"
      "Run 'quillon COMMAND --help' for a command's options.\n"
      "Exit status: 0 done, 1 a file or operation failed, 2 bad command line.\n";
  return help;
}

std::string VersionText() {
  int present = 0;
  std::string missing;
  for (const ExportPresence& entry : ToolExports()) {
    if (entry.present) {
      ++present;
    } else {
      missing += std::string(missing.empty() ? "" : ", ") + entry.name;
    }
  }
  std::string text = std::string("quillon ") + QUILLON_VERSION + " (QuillonBufferOperaU " +
                     QUILLON_VERSION + ")\n" +
                     "library exports used by this build: " + std::to_string(present) + " of " +
                     std::to_string(ToolExports().size()) + "\n";
  if (!missing.empty()) text += "not yet in the library: " + missing + "\n";
  return text;
}

int RunCommandLine(const std::vector<std::string>& args) {
  try {
    return Dispatch(args);
  } catch (const UsageError& error) {
    std::fprintf(stderr, "quillon: %s\nTry 'quillon --help' for more information.\n", error.what());
    return 2;
  } catch (const ToolError& error) {
    std::fprintf(stderr, "quillon: %s\n", error.what());
    return 1;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "quillon: out of memory\n");
    return 1;
  }
}

}  // namespace quillon
