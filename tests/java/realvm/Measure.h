// Several ways to do one thing, measured against each other.
#pragma once

#include <torvan/jni/JniTypes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace tests {

inline volatile jint sink;

struct Way {
  const char* name;
  std::function<void(int)> run;
  std::vector<double> nanoseconds{};
};

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// The first way is what the others are compared with.
inline void Measure(const std::string& title, int rounds, int times, std::vector<Way> ways) {
  for (int i = 0; i < 3; ++i) {
    for (Way& way : ways) way.run(times);
  }
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < ways.size(); ++i) {
      Way& way = ways[(i + static_cast<std::size_t>(round)) % ways.size()];
      const auto begin = std::chrono::steady_clock::now();
      way.run(times);
      const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - begin;
      way.nanoseconds.push_back(spent.count() / times);
    }
  }
  std::printf("%s\n", title.c_str());
  for (const Way& way : ways) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < way.nanoseconds.size(); ++i) {
      ratios.push_back(way.nanoseconds[i] / ways[0].nanoseconds[i]);
    }
    std::printf("  %-44s %8.1f ns  x%.3f\n", way.name, Median(way.nanoseconds), Median(ratios));
  }
}

template <typename Step>
std::function<void(int)> Loop(Step step) {
  return [step](int times) {
    for (int i = 0; i < times; ++i) step(i);
  };
}

inline void Check(JNIEnv* env) {
  if (env->ExceptionCheck() != JNI_FALSE) std::abort();
}

}  // namespace tests
