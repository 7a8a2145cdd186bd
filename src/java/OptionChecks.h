// Options that would make the VM end the process while it is created. All throw StartFailure that names the option.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace torvan::java::detail {

// Every agent is there. `home` is the runtime's, or empty.
void CheckAgents(const std::vector<std::string>& options, const std::filesystem::path& home);

// The sizes of the heap do not contradict one another, and the system has the address space for them.
void CheckHeap(const std::vector<std::string>& options);

// Not more than one garbage collector is switched on.
void CheckCollectors(const std::vector<std::string>& options);

// The modules that are asked for are the runtime's own; there is no module path.
void CheckModules(const std::vector<std::string>& options, const std::filesystem::path& home);

// The system's part: whether the process can have that much address space.
bool CanReserve(unsigned long long bytes) noexcept;

}  // namespace torvan::java::detail
