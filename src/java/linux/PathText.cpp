#include "java/PathText.h"

namespace torvan::java::detail {

std::string ToText(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path ToPath(const std::string& text) { return text; }

}  // namespace torvan::java::detail
