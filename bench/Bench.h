// Rows of the benchmarks: several ways to do one thing, measured against each other.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// One way. All ways of a row return the same number for an argument, which shows that they do the same thing.
struct Way {
  std::string name;
  std::function<long(long)> once;
  std::function<void(benchmark::State&)> run;
};

// The other ways are compared with the first.
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

// Counts the heap blocks of a benchmark's loop. End() is called after it: `each` operations were one turn.
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

// Runs the rows that the command line names and writes their times. Returns the exit code: 1 when a row failed or took
// no time, or when two of its ways do not return the same.
int Run(int argc, char** argv, const char* program, const std::function<void()>& addRows);

// The home of the Java runtime to use, from the command line's --java=FOLDER; empty for the installed one.
const std::string& JavaHome();

}  // namespace bench
