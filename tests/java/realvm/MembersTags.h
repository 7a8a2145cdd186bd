// Tags of the fixture of members.
#pragma once

#include "java/realvm/OneVm.h"

namespace tests {

struct Members {
  static constexpr char JavaName[] = "fixture/Members";
};
struct Greeter {
  static constexpr char JavaName[] = "fixture/Members$Greeter";
};
struct Base {
  static constexpr char JavaName[] = "fixture.Members$Base";  // dots work, too
  using Super = Greeter;
};
struct Derived {
  static constexpr char JavaName[] = "fixture/Members$Derived";
  using Super = Base;
};
struct Failing {
  static constexpr char JavaName[] = "fixture/Members$Failing";
};
struct NoSuch {  // there is none
  static constexpr char JavaName[] = "fixture/NoSuch";
};
struct List {
  static constexpr char JavaName[] = "java/util/List";
};
struct ArrayList {
  static constexpr char JavaName[] = "java/util/ArrayList";
  using Super = List;
};

// What Java threw, with its class; "nothing" where nothing was thrown. The rest of the error is as whole as what() is:
// Java's trace begins with its own words, the cause is that of Java's object, and nothing is pending.
template <typename Function>
std::string ErrorOf(Function&& function) {
  try {
    function();
  } catch (const java::Error& error) {
    EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(error.StackTrace().rfind(java::Call<std::string>(error.Throwable(), "toString") + "\n", 0), 0u);
    const auto cause = java::Call<java::Local<java::Throwable>>(error.Throwable(), "getCause");
    EXPECT_TRUE(java::Same(error.Cause() ? error.Cause()->Throwable() : java::Global<java::Throwable>(), cause));
    EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE);
    return error.what();
  }
  return "nothing";
}

// What the layer adds to Java's own message, which differs between versions: what begins with a parenthesis.
template <typename Function>
std::string AddedBy(Function&& function) {
  const std::string what = ErrorOf(std::forward<Function>(function));
  const std::size_t begin = what.find(" (");
  return begin == std::string::npos ? what : what.substr(begin + 1);
}

}  // namespace tests
