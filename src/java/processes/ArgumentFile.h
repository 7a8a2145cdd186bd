// Java's argument files: "java @file", from version 9 on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

// Adds an argument to the text of an argument file so that java reads it as it is.
// Between quotes only a backslash and the quote are special to java; line ends are written as escapes, for a line's end
// would end the argument.
void AppendToArgumentFile(std::string& file, std::string_view argument);

}  // namespace torvan::java::detail
