// What the launcher costs: its own work on long lists, and a program from launch to exit. This process has no VM.
#include <torvan/Torvan.h>

#include <spawn.h>
#include <sys/wait.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "Bench.h"
#include "jvmlauncher/InstalledJavaVm.h"
#include "platform/Conventions.h"

extern "C" char** environ;

namespace {

using bench::Single;
using mirel::base::CUnicodeString;
using torvan::jvmlauncher::CArgumentList;

constexpr std::size_t Many = 1000;

// An explicit instantiation may name a private member; its function returns it.
using Render = CUnicodeString (CArgumentList::*)() const;
Render Renderer(const CArgumentList&);
template <Render Member>
struct Open {
  friend Render Renderer(const CArgumentList&) { return Member; }
};
template struct Open<&CArgumentList::RenderCommandLine>;

int ByHand(const std::u16string& a, const std::u16string& b) {
  for (std::size_t i = 0, k = 0; i < a.size() || k < b.size(); ++i, ++k) {
    if (i >= a.size()) return -1;
    if (k >= b.size()) return 1;
    int left = 0;
    for (; i < a.size() && a[i] != u'.'; ++i) left = left * 10 + (a[i] - u'0');
    int right = 0;
    for (; k < b.size() && b[k] != u'.'; ++k) right = right * 10 + (b[k] - u'0');
    if (left != right) return left < right ? -1 : 1;
  }
  return 0;
}

std::u16string Number(std::size_t i) {
  const std::string digits = std::to_string(i);
  return {digits.begin(), digits.end()};
}

void AddLists() {
  static std::vector<std::u16string> versions;
  static std::vector<std::u16string> arguments;
  static auto& list = *new CArgumentList();
  for (std::size_t i = 0; i < Many; ++i) {
    versions.push_back(u"1." + Number(i % 7) + u"." + Number(i % 11) + u"." + Number(i));
    arguments.push_back(i % 4 == 0 ? u"with a space " + Number(i) : u"--argument=" + Number(i));
    list.Append(arguments.back().c_str());
  }
  bench::Add("launcher", "1,000 versions compared",
             {Single(
                  "raw",
                  [](long) {
                    long sum = 0;
                    for (std::size_t i = 1; i < Many; ++i) sum += ByHand(versions[i - 1], versions[i]);
                    return sum;
                  },
                  Many - 1),
              Single(
                  "CompareNumbersBetweenDots",
                  [](long) {
                    long sum = 0;
                    for (std::size_t i = 1; i < Many; ++i) {
                      sum +=
                          torvan::jvmlauncher::CompareNumbersBetweenDots(versions[i - 1].c_str(), versions[i].c_str());
                    }
                    return sum;
                  },
                  Many - 1)});
  bench::Add(
      "launcher", "1,000 arguments rendered",
      {Single(
           "std::u16string",
           [](long) {
             std::u16string line;
             for (const std::u16string& argument : arguments) {
               const bool quotes = argument.find(u' ') != std::u16string::npos;
               if (quotes) line += u'"';
               line += argument;
               if (quotes) line += u'"';
               line += u' ';
             }
             return static_cast<long>(line.size());
           },
           Many),
       Single(
           "CArgumentList", [](long) { return static_cast<long>((list.*Renderer(list))().GetLength()); }, Many)});
}

void AddLaunch() {
  torvan::jvmlauncher::InstalledJavaVms installed(10, 5);
  const int count = torvan::jvmlauncher::GetInstalledJavaVms(installed);
  if (count == 0) throw std::runtime_error("no Java runtime is installed");
  const CUnicodeString program = torvan::jvmlauncher::PathOfProgram(installed[static_cast<unsigned>(count) - 1].home,
                                                                    torvan::platform::JavaProgram);
  static const std::string path = static_cast<const char*>(program.ToUTF8());
  static torvan::jvmlauncher::CJavaVmLauncher launcher(u"1.8");
  static auto& options = *new torvan::jvmlauncher::CJavaVmOptions();
  const std::string classes = BENCH_CLASSES;
  torvan::jvmlauncher::options::CClassPathOption classPath;
  classPath.AddEntry(std::u16string(classes.begin(), classes.end()).c_str());
  options.AddOption(classPath);

  std::vector<bench::Way> ways = {
      Single("posix_spawn, waitpid",
             [](long) {
               char name[] = "java", cp[] = "-classpath", folder[] = BENCH_CLASSES, type[] = "bench.Subject";
               char* const words[] = {name, cp, folder, type, nullptr};
               pid_t child = 0;
               if (posix_spawn(&child, path.c_str(), nullptr, nullptr, words, environ) != 0) {
                 throw std::runtime_error("cannot start " + path);
               }
               int status = -1;
               if (waitpid(child, &status, 0) != child) throw std::runtime_error("cannot wait for " + path);
               return static_cast<long>(WEXITSTATUS(status));
             }),
      Single("CJavaVmLauncher", [](long) {
        const auto process = launcher.Launch(options, u"bench.Subject", CArgumentList());
        process->Wait();
        return static_cast<long>(process->GetExitCode());
      })};
  bench::Row row{"launcher", "launch to exit", std::move(ways)};
  row.isElapsed = true;
  bench::Rows().push_back(std::move(row));
}

}  // namespace

int main(int argc, char** argv) try {
  torvan::Initialize();
  return bench::Run(argc, argv, "bench_launcher", [] {
    AddLists();
    AddLaunch();
  });
} catch (const std::exception& failure) {
  std::fprintf(stderr, "bench_launcher: %s\n", failure.what());
  return 2;
}
