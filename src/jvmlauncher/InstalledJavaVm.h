// The Java runtimes installed on this machine.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <mirel/util/Vector.h>

namespace torvan::jvmlauncher {

// One installed runtime: the version it is registered under and its home folder.
struct InstalledJavaVm {
  mirel::base::CUnicodeString version;
  mirel::base::CUnicodeString home;

  // Tells whether the version is at or above the requested one.
  // Throws CIllegalArgumentException "Invalid vm version." for null or empty text.
  bool IsCompatibleWith(const RX::UniChar* requested) const;
};

using InstalledJavaVms = mirel::util::CVector<InstalledJavaVm>;

// Appends every registered runtime whose files exist and returns the number of records in `list`.
// When the registry fails half-way, `list` is emptied: half a list could hide the newest runtime.
int EnumerateInstalledJavaVms(InstalledJavaVms& list);

// Appends the same, sorts the list from the oldest version to the newest, and returns the number of records.
int GetInstalledJavaVms(InstalledJavaVms& list);

// Compares versions number by number between their dots and returns -1, 0 or 1.
// A number is what "%d" reads: it may begin with blanks and a sign, and what follows its digits is ignored. Without
// digits it is 0. Of versions that agree as far as both go, the one with fewer numbers is less.
int CompareNumbersBetweenDots(const RX::UniChar* a, const RX::UniChar* b) noexcept;

// Tells whether a path names an existing file, not a folder; true also when the file cannot be opened now.
bool FileExists(const mirel::base::CUnicodeString& path);

// Returns the path of one of a runtime's programs.
mirel::base::CUnicodeString PathOfProgram(const mirel::base::CUnicodeString& home, const RX::UniChar* program);

}  // namespace torvan::jvmlauncher
