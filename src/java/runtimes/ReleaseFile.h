// The file "release" in the home of a Java runtime.
#pragma once

#include <torvan/java/Version.h>

#include <optional>
#include <string>
#include <string_view>

namespace torvan::java::detail {

// What a release file tells.
struct Release {
  std::string versionText;         // empty when the file has none
  std::optional<Version> version;  // absent when the text is no version, too
  std::string vendor;              // empty when the file has none
  std::string libc;                // "gnu", "musl"; empty when the file has none
};

// Reads the text of a release file: lines of KEY="VALUE". Of a key that comes twice the last line counts.
// The text may be any bytes. Texts come out without control characters, and what is not UTF-8 in them is a '?' each
// byte.
Release ReadRelease(std::string_view file);

}  // namespace torvan::java::detail
