// Release files.
#include "fuzz/Fuzz.h"
#include "java/runtimes/ReleaseFile.h"

using tests::Require;
using torvan::java::detail::ReadRelease;
using torvan::java::detail::Release;

namespace {

void RequireShowable(const std::string& text) {
  Require(text.size() <= 200, "a text is not longer than it may be");
  for (const char unit : text) {
    const auto byte = static_cast<unsigned char>(unit);
    Require(byte >= 0x20 && byte != 0x7F, "a text has no control characters");
  }
  // Well-formed text is unchanged, so repairing it a second time changes nothing.
  Require(ReadRelease("IMPLEMENTOR=\"" + text + "\"").vendor == text, "a text is well-formed");
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view file = tests::Input(data, size);
  const Release release = ReadRelease(file);
  RequireShowable(release.vendor);
  RequireShowable(release.versionText);
  if (release.version) {
    Require(!release.versionText.empty(), "there is a text where there is a version");
    Require(file.find(release.version->ToString()) != std::string_view::npos, "the version is in the file");
  }
  Require(ReadRelease("# no key\n" + std::string(file)).versionText == release.versionText ||
              file.substr(0, 3) == "\xEF\xBB\xBF",
          "a line without a key changes nothing");
  return 0;
}
