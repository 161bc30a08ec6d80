#include "args.h"

#include <gtest/gtest.h>

#include "errors.h"

namespace quillon {
namespace {

const std::vector<OptionSpec> kSpecs = {
    {"size", 's', "WxH", ""},
    {"flip", 0, nullptr, ""},
    {"quiet", 'q', nullptr, ""},
    {"overlay", 0, "PNG@X,Y", ""},
};

TEST(ParseArgs, AcceptsEveryGnuSpelling) {
  struct Case {
    std::vector<std::string> args;
    std::vector<std::string> positional;
    std::string size;  // "" when --size is absent
    bool flip;
  };
  const Case cases[] = {
      {{"in", "out"}, {"in", "out"}, "", false},
      {{"--size", "4x2", "in"}, {"in"}, "4x2", false},
      {{"--size=4x2", "in"}, {"in"}, "4x2", false},
      {{"-s", "4x2", "in"}, {"in"}, "4x2", false},
      {{"-s4x2", "in"}, {"in"}, "4x2", false},
      {{"in", "--flip", "out"}, {"in", "out"}, "", true},
      // The last of repeated values wins.
      {{"--size", "1x1", "--size", "8x8"}, {}, "8x8", false},
      // "-" names standard input; after "--" everything is a file name.
      {{"-", "--", "--flip", "-s"}, {"-", "--flip", "-s"}, "", false},
      {{"--size="}, {}, "", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.args));
    const ParsedArgs parsed = ParseArgs(c.args, kSpecs, "test");
    EXPECT_EQ(parsed.positional, c.positional);
    EXPECT_EQ(parsed.Value("size").value_or(""), c.size);
    EXPECT_EQ(parsed.Has("flip"), c.flip);
  }
}

TEST(ParseArgs, RepeatedOptionsKeepEveryValue) {
  const ParsedArgs parsed =
      ParseArgs({"--overlay", "a.png@1,2", "--overlay=b.png@3,4"}, kSpecs, "test");
  EXPECT_EQ(parsed.options.at("overlay"), (std::vector<std::string>{"a.png@1,2", "b.png@3,4"}));
}

TEST(ParseArgs, RejectsWhatItCannotUnderstand) {
  struct Case {
    std::vector<std::string> args;
    std::string message;
  };
  const Case cases[] = {
      {{"--bogus"}, "test: unknown option '--bogus'"},
      {{"--bogus=1"}, "test: unknown option '--bogus'"},
      {{"-x"}, "test: unknown option '-x'"},
      {{"--size"}, "test: option '--size' needs a value (WxH)"},
      {{"in", "-s"}, "test: option '-s' needs a value (WxH)"},
      {{"--flip=yes"}, "test: option '--flip' takes no value"},
      {{"-qq"}, "test: option '-q' takes no value"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.args));
    try {
      ParseArgs(c.args, kSpecs, "test");
      ADD_FAILURE() << "accepted";
    } catch (const UsageError& error) {
      EXPECT_EQ(error.what(), c.message);
    }
  }
}

TEST(ParseSize, TakesWidthByHeight) {
  struct Case {
    const char* text;
    bool ok;
    int width, height;
  };
  const Case cases[] = {
      {"1920x1080", true, 1920, 1080}, {"1x1", true, 1, 1},        {"32768x2", true, 32768, 2},
      {"0x10", false, 0, 0},           {"10x0", false, 0, 0},      {"-2x4", false, 0, 0},
      {"1920", false, 0, 0},           {"1920X1080", false, 0, 0}, {"x", false, 0, 0},
      {"12x34x5", false, 0, 0},        {"32769x2", false, 0, 0},   {"4 x4", false, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    int width = 0;
    int height = 0;
    if (c.ok) {
      ParseSize(c.text, "--size", width, height);
      EXPECT_EQ(width, c.width);
      EXPECT_EQ(height, c.height);
    } else {
      EXPECT_THROW(ParseSize(c.text, "--size", width, height), UsageError);
    }
  }
}

TEST(ParseInteger, HoldsToItsRange) {
  EXPECT_EQ(ParseInteger("-5", "n", -5, 5), -5);
  EXPECT_EQ(ParseInteger("5", "n", -5, 5), 5);
  for (const char* bad : {"6", "-6", "", "1.5", "2a", " 1"}) {
    SCOPED_TRACE(bad);
    EXPECT_THROW(ParseInteger(bad, "n", -5, 5), UsageError);
  }
}

TEST(OptionHelp, AlignsTheDescriptions) {
  const std::string help =
      OptionHelp({{"in-size", 's', "WxH", "frame size"}, {"bt709", 0, nullptr, "BT.709"}});
  EXPECT_EQ(help,
            "  -s, --in-size WxH  frame size\n"
            "      --bt709        BT.709\n");
}

}  // namespace
}  // namespace quillon
