// quillon demo: the library's frame chain on a built-in picture, each
// stage timed and written as a PNG.
#ifndef QUILLON_TOOL_DEMO_H_
#define QUILLON_TOOL_DEMO_H_

#include <string>
#include <vector>

namespace quillon {

int RunDemo(const std::vector<std::string>& args);
std::string DemoHelp();

}  // namespace quillon

#endif  // QUILLON_TOOL_DEMO_H_
