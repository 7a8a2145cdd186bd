#include "java/processes/probe/Steps.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace tests {

namespace {

void Descriptors() {
  DIR* const folder = opendir("/proc/self/fd");
  std::map<int, std::string> numbers;
  while (const dirent* const entry = readdir(folder)) {
    const int number = std::atoi(entry->d_name);
    if (entry->d_name[0] != '.' && number != dirfd(folder)) numbers[number] = entry->d_name;
  }
  closedir(folder);
  for (const auto& number : numbers) Put(number.second + " ");
}

int g_code = 0;

}  // namespace

Steps SystemSteps() { return {{"descriptors", Descriptors}}; }

std::vector<std::string> AllArguments(int count, char** arguments) { return {arguments, arguments + count}; }

std::vector<std::string> AllVariables() {
  std::vector<std::string> all;
  for (char** variable = environ; *variable != nullptr; ++variable) all.emplace_back(*variable);
  return all;
}

std::string FromSystem(const std::string& bytes) { return bytes; }

unsigned long Again(const std::string& steps, bool apart) {
  std::vector<std::string> arguments = {OwnPath(), "Probe"};
  for (std::size_t begin = 0; begin < steps.size();) {
    const std::size_t end = std::min(steps.find(' ', begin), steps.size());
    arguments.push_back(steps.substr(begin, end - begin));
    begin = end + 1;
  }
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const pid_t id = fork();
  if (id == 0) {
    if (apart) setsid();
    execv("/proc/self/exe", pointers.data());
    _exit(127);
  }
  return static_cast<unsigned long>(id);
}

void IgnoreRequestsToStop() { std::signal(SIGTERM, SIG_IGN); }

void ExitWhenAskedToStop(int code) {
  g_code = code;
  std::signal(SIGTERM, [](int) { _exit(g_code); });
}

void Raise(int signal) { std::raise(signal); }

unsigned long OwnId() { return static_cast<unsigned long>(getpid()); }

void UseBinaryStreams() {}

std::size_t ReadInput(char* piece, std::size_t size) {
  const ssize_t count = read(STDIN_FILENO, piece, size);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace tests
