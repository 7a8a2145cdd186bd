// What a failure says.
#pragma once

#include <string>

namespace tests {

// The text of the failure of this class that a function throws; "nothing" when it throws none.
template <typename Expected, typename Function>
std::string WhatOf(Function&& function) {
  try {
    function();
  } catch (const Expected& failure) {
    return failure.what();
  }
  return "nothing";
}

}  // namespace tests
