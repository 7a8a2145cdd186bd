// What is kept of each thread.
#include "java/Threads.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace tests {
namespace {

using torvan::java::detail::AttachmentNumber;
using torvan::java::detail::CacheEnv;
using torvan::java::detail::SetAttachmentNumber;

// Made before the library's static objects, as a host's own may be.
struct Early {
  Early() {
    unset = AttachmentNumber();
    SetAttachmentNumber(6);
    CacheEnv(reinterpret_cast<JNIEnv*>(8));
    kept = AttachmentNumber();
    CacheEnv(nullptr);
    SetAttachmentNumber(0);
  }
  std::uintptr_t unset;
  std::uintptr_t kept;
};
#ifdef _MSC_VER
#pragma init_seg(lib)
const Early s_early;
#else
const Early s_early __attribute__((init_priority(101)));
#endif

TEST(ThreadsTest, StaticObjectsThatAreMadeFirstUseIt) {
  EXPECT_EQ(s_early.unset, 0u);
  EXPECT_EQ(s_early.kept, 6u) << "the environment is stored elsewhere";
}

}  // namespace
}  // namespace tests
