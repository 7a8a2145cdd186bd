// A Java runtime whose java is a probe that does what its arguments say.
#pragma once

#include <ThisSystem.h>
#include <gtest/gtest.h>
#include <torvan/java/Process.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "java/processes/ThisProcess.h"

namespace tests {

namespace java = torvan::java;
using namespace std::chrono_literals;

// The file name of java.
constexpr const char* Java = OnThisSystem("java.exe", "java");

// The runtime's home, with a space in its path; made once for the test program. Below it is the folder "empty".
const std::filesystem::path& ProbeHome();

// The java of a home, and a new home below the other whose java is a file with this text that may be run.
std::filesystem::path JavaOf(const std::filesystem::path& home);
std::filesystem::path HomeWith(const std::string& name, const std::string& java);

// A program that goes through these steps of the probe.
inline java::Program Probe(const std::vector<std::string>& steps) {
  return java::Program::MainClass("Probe").Runtime(ProbeHome()).Arguments(steps);
}

// The texts that end with this byte.
std::vector<std::string> Split(const std::string& text, char end);

// All of a file, as bytes.
std::string ReadFile(const std::filesystem::path& path);

// The function must throw this class with exactly this text.
template <class Exception, class Function>
void ExpectThrow(const Function& function, const std::string& text) {
  try {
    function();
    ADD_FAILURE() << "nothing was thrown, but expected: " << text;
  } catch (const Exception& exception) {
    EXPECT_EQ(exception.what(), text);
  }
}

// How long a test waits for what must happen: only one that fails takes so long, however busy the machine is.
constexpr std::chrono::milliseconds Patience = 60s;

// How many milliseconds a program sleeps that a test ends.
constexpr const char* Forever = "600000";

// Waits until the condition is true, but no longer than that. Returns whether it is.
template <class Condition>
bool Eventually(const Condition& condition) {
  const auto end = std::chrono::steady_clock::now() + Patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

// Calls the function with longer and longer times until it returns true: until this machine was fast enough. Returns
// whether it was.
template <class Function>
bool WithEnoughTime(const Function& function) {
  for (std::chrono::milliseconds time = 500ms; time <= Patience; time *= 2) {
    if (function(time)) return true;
  }
  return false;
}

// Expects that the process holds no more than before. What a program's thread holds it frees a moment after the
// program's end was reported, so that is waited for; a thread of an earlier test may have ended since. A failure prints
// the moment. (SCOPED_TRACE starts a thread on Windows.)
void ExpectHeld(const Held& before, const std::string& moment = "at the end");

}  // namespace tests
