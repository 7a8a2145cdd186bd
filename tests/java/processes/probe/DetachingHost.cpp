// A host whose own end is watched: starts the probe detached, writes its id as a line, and ends or waits.
// Its last arguments are the home of the probe's runtime, how many milliseconds to sleep, and "ends" or "stays".
#include <torvan/java/Program.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <thread>

int main(int count, char** arguments) {
  try {
    const std::string time = arguments[count - 2];
    const auto home = std::filesystem::u8path(arguments[count - 3]);
    const auto probe = torvan::java::Program::MainClass("Probe").Runtime(home).Arguments({"sleep", time});
    std::printf("%lu\n", static_cast<unsigned long>(probe.Detached()));
    std::fflush(stdout);
    if (arguments[count - 1] == std::string("stays")) {
      std::this_thread::sleep_for(std::chrono::milliseconds(std::stol(time)));
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
