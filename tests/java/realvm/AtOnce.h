// Work that several threads begin at the same time.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace tests {

template <typename Function>
void InEightThreadsAtOnce(Function function) {
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      for (++ready; ready < 8;) std::this_thread::yield();
      function();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace tests
