// Programs that cannot start on Windows: paths that are too long for it.
#include "java/processes/Probe.h"
#include "java/processes/Reasons.h"

namespace tests {
namespace {

using java::StartFailure;
namespace fs = std::filesystem;

// A path with so many units that begins with the folder.
fs::path PathOfSize(const fs::path& folder, std::size_t size) {
  std::wstring path = folder.native() + L"\\";
  while (path.size() + 100 < size) path += std::wstring(49, L'x') + L"\\";
  return path += std::wstring(size - path.size(), L'y');
}

TEST(LaunchFailureTest, AProgramWhosePathIsTooLongSaysSo) {
  for (const bool isLonger : {false, true}) {
    const fs::path program = PathOfSize(ProbeHome(), isLonger ? 260 : 259);
    const java::Runtime runtime({ProbeHome(), java::Version::Parse("17"), "", "x86_64", false, "", program, "PATH"});
    const char* const hint = isLonger ? " (Windows takes 259 characters, and the path has 260)" : "";
    ExpectThrow<StartFailure>([&] { java::Run(java::Program::MainClass("X").Runtime(runtime)); },
                              "Could not run \"" + program.u8string() + "\": " + Reasons().noWay + hint);
  }
}

TEST(LaunchFailureTest, AFolderWhosePathIsTooLongSaysSo) {
  for (const bool isLonger : {false, true}) {
    const fs::path folder = PathOfSize(ProbeHome(), isLonger ? 259 : 258);
    const char* const hint = isLonger ? " (Windows takes 258 characters, and the path has 259)" : "";
    ExpectThrow<StartFailure>([&] { java::Run(Probe({}).Folder(folder)); },
                              "Could not change to the folder \"" + folder.u8string() + "\" for \"" +
                                  JavaOf(ProbeHome()).u8string() + "\": " + Reasons().noFolder + hint);
  }
}

}  // namespace
}  // namespace tests
