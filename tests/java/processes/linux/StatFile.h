// What the kernel says of a process or a thread in its file "stat".
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tests {

// The fields that follow the name, of which the first is the state; none if there is no such folder.
std::vector<std::string> StatOf(const std::filesystem::path& folder);

}  // namespace tests
