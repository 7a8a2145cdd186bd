// Places that match a pattern.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

struct Expansion {
  std::string place;
  std::string foundIn;  // what the pattern's first * was looked for in, else what the place is in
};

// All places below the base that fit a pattern such as "lib/jvm/*": a part with a * fits every name that begins and
// ends like it, any other part only itself, and need not be there. Names and patterns have the same separator.
std::vector<Expansion> Expand(const std::string& base, std::string_view pattern, char separator,
                              const std::function<std::vector<std::string>(const std::string& place)>& namesIn);

}  // namespace torvan::java::detail
