#include "java/runtimes/Pattern.h"

#include <utility>

namespace torvan::java::detail {
namespace {

bool FitsPattern(std::string_view name, std::string_view front, std::string_view back) {
  return name.size() >= front.size() + back.size() && name.substr(0, front.size()) == front &&
         name.substr(name.size() - back.size()) == back;
}

}  // namespace

std::vector<Expansion> Expand(const std::string& base, std::string_view pattern, char separator,
                              const std::function<std::vector<std::string>(const std::string& place)>& namesIn) {
  std::vector<Expansion> matches{{base, {}}};
  bool hasStar = false;
  while (!pattern.empty()) {
    const std::string_view part = pattern.substr(0, pattern.find(separator));
    pattern.remove_prefix(part.size() == pattern.size() ? part.size() : part.size() + 1);
    const std::size_t star = part.find('*');
    std::vector<Expansion> longer;
    for (const Expansion& match : matches) {
      const std::string& foundIn = hasStar ? match.foundIn : match.place;
      if (star == std::string_view::npos) {
        longer.push_back({match.place + separator + std::string(part), foundIn});
        continue;
      }
      for (const std::string& name : namesIn(match.place)) {
        if (!FitsPattern(name, part.substr(0, star), part.substr(star + 1))) continue;
        longer.push_back({match.place + separator + name, foundIn});
      }
    }
    hasStar = hasStar || star != std::string_view::npos;
    matches = std::move(longer);
  }
  return matches;
}

}  // namespace torvan::java::detail
