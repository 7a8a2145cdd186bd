// Paths as text.
#pragma once

#include <filesystem>
#include <string>

namespace torvan::java::detail {

// The character between the paths of a list.
inline constexpr char PathListSeparator = std::filesystem::path::preferred_separator == '\\' ? ';' : ':';

// In UTF-8. On Linux the bytes of a path stay as they are.
std::string ToText(const std::filesystem::path& path);
std::filesystem::path ToPath(const std::string& text);

}  // namespace torvan::java::detail
