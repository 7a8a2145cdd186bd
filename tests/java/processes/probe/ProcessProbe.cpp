// A program that is run in place of Java: what follows after the class "Probe" on its command line are steps, done in
// order. Like Java it reads its command line from an argument file, if that is all it gets. It ends with exit code 125
// when it cannot write.
//
// arguments ...     writes each argument that follows, ended by a zero, and is the last step
// line              writes all of its command line, this step included, each part ended by a zero
// environment       writes each variable, ended by a zero
// folder            writes the current folder
// descriptors       writes the numbers of the open descriptors (Linux)
// handle N          writes whether the handle with this value is there (Windows)
// job MS            starts a process that waits so long, in a new job, and writes its id as a line, or "refused";
//                   goes on at once (Windows)
// says TEXT         writes the text to the output; complains TEXT: to the error output
// echo              copies the input to the output as it comes, until its end
// flood N           writes N bytes "o" to the output and N bytes "e" to the error output while it reads the input to
//                   its end; then writes how many bytes that were, as a line
// leaves MS         starts a process that writes "late" after so many milliseconds, writes its id as a line, and does
//                   not wait for it
// tree MS           starts a child, which starts a child, which is in another group (session) and has a child; all
//                   of them wait so long; writes their ids, one a line
// deaf              ignores requests to stop
// orderly N         ends with exit code N when it is asked to stop
// sleep MS
// awaits FILE       waits until there is this file, for ten minutes at most
// signal N          raises it; on Windows an access violation
// exit N
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "java/processes/ArgumentFileReader.h"
#include "java/processes/probe/Steps.h"

namespace tests {

namespace {

std::vector<std::string> g_line;
std::vector<std::string> g_steps;
std::size_t g_at = 0;

void PutTo(std::FILE* to, const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), to) != text.size() || std::fflush(to) != 0) std::_Exit(125);
}

}  // namespace

std::string Next() { return g_at < g_steps.size() ? g_steps[g_at++] : ""; }
long NextNumber() { return std::strtol(Next().c_str(), nullptr, 10); }
void Put(const std::string& text) { PutTo(stdout, text); }
std::string OwnPath() { return g_line[0]; }

namespace {

void PutZeroEnded(const std::string& text) { std::fwrite(text.c_str(), 1, text.size() + 1, stdout); }

void SleepNow() { std::this_thread::sleep_for(std::chrono::milliseconds(NextNumber())); }

void Awaits() {
  const std::filesystem::path file = std::filesystem::u8path(Next());
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(10);
  while (!std::filesystem::exists(file) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

std::string ReadPiece() {
  static char piece[65536];
  return std::string(piece, ReadInput(piece, sizeof piece));
}

void Flood() {
  const auto size = static_cast<std::size_t>(NextNumber());
  const auto pour = [size](std::FILE* to, char byte) {
    const std::string piece(65536, byte);
    for (std::size_t left = size; left > 0;) left -= std::fwrite(piece.data(), 1, std::min(left, piece.size()), to);
    std::fflush(to);
  };
  std::size_t count = 0;
  std::thread reader([&count] {
    for (std::string piece; !(piece = ReadPiece()).empty();) count += piece.size();
  });
  std::thread complainer(pour, stderr, 'e');
  pour(stdout, 'o');
  complainer.join();
  reader.join();
  Put("\n" + std::to_string(count) + "\n");
}

void Leaves() { Put(std::to_string(Again("sleep " + std::to_string(NextNumber()) + " says late", false)) + "\n"); }

// Each level writes its own id and starts the next; the second one is apart.
void Tree() {
  const std::string time = std::to_string(NextNumber());
  const std::string level = Next();
  const int depth = level.empty() ? 0 : std::atoi(level.c_str());
  Put(std::to_string(OwnId()) + "\n");
  if (depth < 3) Again("tree " + time + " " + std::to_string(depth + 1), depth == 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(time.c_str())));
}

std::vector<std::string> WithArgumentFile(std::vector<std::string> line) {
  if (line.size() != 2 || line[1].empty() || line[1][0] != '@') return line;
  std::ifstream file(std::filesystem::u8path(line[1].substr(1)), std::ios::binary);
  std::string bytes;
  std::getline(file, bytes, '\0');  // no argument has one
  line.pop_back();
  for (const std::string& argument : ReadArgumentFile(bytes)) line.push_back(FromSystem(argument));
  return line;
}

void Arguments() {
  while (g_at < g_steps.size()) PutZeroEnded(Next());
}

void Echo() {
  for (std::string piece; !(piece = ReadPiece()).empty();) Put(piece);
}

}  // namespace
}  // namespace tests

int main(int count, char** arguments) {
  using namespace tests;
  UseBinaryStreams();
  g_line = WithArgumentFile(AllArguments(count, arguments));
  const auto isClass = std::find(g_line.begin() + 1, g_line.end(), "Probe");
  if (isClass == g_line.end()) return 126;
  g_steps.assign(isClass + 1, g_line.end());
  Steps steps = {
      {"arguments", Arguments},
      {"line", [] { std::for_each(g_line.begin(), g_line.end(), PutZeroEnded); }},
      {"environment",
       [] {
         for (const std::string& variable : AllVariables()) PutZeroEnded(variable);
       }},
      {"folder", [] { Put(std::filesystem::current_path().u8string()); }},
      {"says", [] { Put(Next()); }},
      {"complains", [] { PutTo(stderr, Next()); }},
      {"echo", Echo},
      {"flood", Flood},
      {"leaves", Leaves},
      {"tree", Tree},
      {"deaf", IgnoreRequestsToStop},
      {"orderly", [] { ExitWhenAskedToStop(static_cast<int>(NextNumber())); }},
      {"sleep", SleepNow},
      {"awaits", Awaits},
      {"signal", [] { Raise(static_cast<int>(NextNumber())); }},
      {"exit", [] { std::exit(static_cast<int>(NextNumber())); }},
  };
  steps.merge(SystemSteps());
  while (g_at < g_steps.size()) {
    const auto step = steps.find(Next());
    if (step == steps.end()) return 126;
    step->second();
  }
  std::fflush(stdout);
}
