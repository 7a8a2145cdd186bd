// Files as Java sees them.
#pragma once

#include <gtest/gtest.h>
#include <torvan/Java.h>

namespace tests {

struct File {
  static constexpr char JavaName[] = "java/io/File";
};

// A VM may know the machine's files by other names than this process does.
inline bool JavaKnows(const char* path) { return torvan::java::Call<bool>(torvan::java::New<File>(path), "exists"); }
#define SKIP_UNLESS_JAVA_KNOWS(path) \
  if (!JavaKnows(path)) GTEST_SKIP() << "this Java does not know " << path

}  // namespace tests
