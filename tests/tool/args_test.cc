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


}  // namespace
}  // namespace quillon
