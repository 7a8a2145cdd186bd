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
struct List {
  static constexpr char JavaName[] = "java/util/List";
};
struct ArrayList {
  static constexpr char JavaName[] = "java/util/ArrayList";
  using Super = List;
};

// What Java threw, with its class; "" where nothing was thrown.
template <typename Function>
std::string ErrorOf(Function&& function) {
  return WhatOf<java::Error>(std::forward<Function>(function));
}

// What the layer adds to Java's own message, which differs between versions: what begins with a parenthesis.
template <typename Function>
std::string AddedBy(Function&& function) {
  const std::string what = ErrorOf(std::forward<Function>(function));
  const std::size_t begin = what.find(" (");
  return begin == std::string::npos ? what : what.substr(begin + 1);
}

}  // namespace tests
