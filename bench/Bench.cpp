#include "Bench.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <optional>

namespace bench {
namespace {

std::string s_javaHome;

struct Measured {
  std::vector<double> nanoseconds;  // of one operation, one for each repetition
  double blocks = 0;
  std::string failure;
};

// Collects the times of the ways of one row.
class Collector : public benchmark::BenchmarkReporter {
 public:
  explicit Collector(bool isElapsed) : m_isElapsed(isElapsed) {}

  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Measured& measured = ways[run.run_name.function_name];
      if (run.error_occurred) {
        measured.failure = run.error_message;
        continue;
      }
      const double seconds = m_isElapsed ? run.real_accumulated_time : run.cpu_accumulated_time;
      const double operations = static_cast<double>(run.iterations) * run.counters.at("operations").value;
      measured.nanoseconds.push_back(seconds * 1e9 / operations);
      measured.blocks = run.counters.at("blocks").value;
    }
  }

  std::map<std::string, Measured> ways;

 private:
  bool m_isElapsed;
};

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Says which way of a row returns another result than the first, or throws; empty when none does.
std::string Difference(const Row& row) {
  constexpr long argument = 7;
  std::optional<long> expected;
  for (const Way& way : row.ways) {
    try {
      const long result = way.once(argument);
      if (expected && result != *expected) {
        return way.name + " returns " + std::to_string(result) + " and not " + std::to_string(*expected);
      }
      expected = result;
    } catch (const std::exception& failure) {
      return way.name + ": " + failure.what();
    }
  }
  return {};
}

// Lets the VM compile what a row calls before it is measured.
void WarmUp(const Row& row) {
  for (int round = 0; round < 2; ++round) {
    for (const Way& way : row.ways) {
      const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
      for (int i = 0; i < 20000 && std::chrono::steady_clock::now() < end; ++i) way.once(i);
    }
  }
}

Measured Failed(std::string why) {
  Measured measured;
  measured.failure = std::move(why);
  return measured;
}

std::map<std::string, Measured> MeasureRow(const Row& row) {
  if (row.prepare) row.prepare();
  const std::string difference = Difference(row);
  if (!difference.empty()) return {{row.ways.front().name, Failed(difference)}};
  WarmUp(row);
  for (const Way& way : row.ways) {
    auto* const registered = benchmark::RegisterBenchmark(way.name.c_str(), way.run);
    if (row.isElapsed) registered->UseRealTime();
  }
  Collector collector(row.isElapsed);
  benchmark::RunSpecifiedBenchmarks(&collector, "all");
  benchmark::ClearRegisteredBenchmarks();
  for (const Way& way : row.ways) {
    Measured& measured = collector.ways[way.name];
    if (!measured.failure.empty()) continue;
    if (measured.nanoseconds.empty()) measured.failure = "did not run";
    for (const double time : measured.nanoseconds) {
      if (!(time > 0)) measured.failure = "took no time";
    }
  }
  return collector.ways;
}

void Write(std::FILE* file, const Row& row, const std::map<std::string, Measured>& ways, bool isFirst) {
  std::fprintf(file, "%s\n  {\"group\": %s, \"row\": %s, \"elapsed\": %s, \"ways\": [", isFirst ? "" : ",",
               Quoted(row.group).c_str(), Quoted(row.name).c_str(), row.isElapsed ? "true" : "false");
  for (std::size_t i = 0; i < row.ways.size(); ++i) {
    const Measured& measured = ways.at(row.ways[i].name);
    std::fprintf(file, "%s\n    {\"way\": %s, \"blocks\": %.3f, \"ns\": [", i == 0 ? "" : ",",
                 Quoted(row.ways[i].name).c_str(), measured.blocks);
    for (std::size_t n = 0; n < measured.nanoseconds.size(); ++n) {
      std::fprintf(file, "%s%.3f", n == 0 ? "" : ", ", measured.nanoseconds[n]);
    }
    std::fputs("]}", file);
  }
  std::fputs("]}", file);
}

// The value of an argument NAME=VALUE, or null.
const char* Value(const char* argument, const char* name) {
  const std::size_t length = std::strlen(name);
  return std::strncmp(argument, name, length) == 0 ? argument + length : nullptr;
}

}  // namespace

std::vector<Row>& Rows() {
  static std::vector<Row> rows;
  return rows;
}

const std::string& JavaHome() { return s_javaHome; }

int Run(int argc, char** argv, const char* program, const std::function<void()>& addRows) {
  std::string only;
  std::string path;
  // The command line's own come later and replace these.
  std::vector<std::string> arguments = {argv[0], "--benchmark_enable_random_interleaving=true",
                                        "--benchmark_repetitions=9", "--benchmark_min_time=0.01"};
  for (int i = 1; i < argc; ++i) {
    if (const char* value = Value(argv[i], "--rows=")) {
      only = value;
    } else if (const char* home = Value(argv[i], "--java=")) {
      s_javaHome = home;
    } else if (const char* file = Value(argv[i], "--json=")) {
      path = file;
    } else {
      arguments.emplace_back(argv[i]);
    }
  }
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;

  addRows();
  std::FILE* const file = path.empty() ? nullptr : std::fopen(path.c_str(), "w");
  if (!path.empty() && file == nullptr) {
    std::fprintf(stderr, "%s: cannot write %s\n", program, path.c_str());
    return 2;
  }
  if (file != nullptr) std::fprintf(file, "{\"program\": %s, \"rows\": [", Quoted(program).c_str());
  std::size_t done = 0;
  std::size_t failed = 0;
  std::size_t number = 0;
  for (const Row& row : Rows()) {
    ++number;
    if ((row.group + ": " + row.name).find(only) == std::string::npos) continue;
    if (isatty(STDERR_FILENO) != 0) {
      std::fprintf(stderr, "\r\033[K%s: %zu of %zu: %s", program, number, Rows().size(), row.name.c_str());
    }
    const auto ways = MeasureRow(row);
    std::string failure;
    for (const auto& [name, measured] : ways) {
      if (!measured.failure.empty()) failure += "\n  " + name + ": " + measured.failure;
    }
    if (!failure.empty()) {
      std::fprintf(stderr, "%s: row '%s' failed:%s\n", program, row.name.c_str(), failure.c_str());
      ++failed;
      continue;
    }
    if (file != nullptr) Write(file, row, ways, done == 0);
    ++done;
  }
  if (isatty(STDERR_FILENO) != 0) std::fputs("\r\033[K", stderr);
  if (file != nullptr) {
    std::fputs("\n]}\n", file);
    std::fclose(file);
  }
  std::printf("%s: %zu rows measured, %zu failed\n", program, done, failed);
  return failed == 0 && done != 0 ? 0 : 1;
}

}  // namespace bench
