// Rows of the benchmarks: several ways to do one thing, measured against each other.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// One way. The number that it returns for an argument is the same in all ways of a row: they do the same thing.
struct Way {
  std::string name;
  std::function<long(long)> once;
  std::function<void(benchmark::State&)> run;
};

// The first way is what the others are compared with.
struct Row {
  std::string group;
  std::string name;
  std::vector<Way> ways;
  bool isElapsed = false;           // by the clock on the wall and not by the processor's time: another process works
  std::function<void()> prepare{};  // called before the row and never for another
};

std::vector<Row>& Rows();

inline void Add(const char* group, const std::string& name, std::vector<Way> ways) {
  Rows().push_back({group, name, std::move(ways)});
}

// How many blocks the calling thread has taken from the heap so far.
unsigned long HeapBlocks() noexcept;

// Must be called where a benchmark's loop ends: `each` operations were one turn of it.
class Counted {
 public:
  explicit Counted(benchmark::State& state) : m_state(state), m_before(HeapBlocks()) {}
  void End(long each) {
    const double operations = static_cast<double>(m_state.iterations()) * static_cast<double>(each);
    m_state.counters["operations"] = static_cast<double>(each);
    m_state.counters["blocks"] = static_cast<double>(HeapBlocks() - m_before) / operations;
  }

 private:
  benchmark::State& m_state;
  unsigned long m_before;
};

// A way whose every call is measured as so many operations.
template <typename Operation>
Way Single(std::string name, Operation operation, long each = 1) {
  return {std::move(name), operation, [operation, each](benchmark::State& state) {
            Counted counted(state);
            long turn = 0;
            for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(operation(++turn));
            counted.End(each);
          }};
}

// Runs the rows that the command line names and writes what they took. The exit code is 1 when one failed, took no
// time, or when two ways of a row do not do the same.
int Run(int argc, char** argv, const char* program, const std::function<void()>& addRows);

// A folder that the command line gives with --java=FOLDER: the home of the Java runtime to use.
const std::string& JavaHome();

}  // namespace bench
