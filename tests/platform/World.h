// The files, keys and processes that the contract of System is tested with.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/System.h"

namespace tests {

// A system, and names of things that exist and that do not. Texts are UTF-8.
class World {
 public:
  virtual ~World() = default;

  virtual torvan::platform::System& GetSystem() = 0;
  // Command lines of a process that ends by itself with a code, and of one that runs until it is ended.
  virtual std::string ProcessThatExits(int code) = 0;
  virtual std::string ProcessThatRuns() = 0;
  // Fails the test when something that the system has opened is still open.
  virtual void ExpectNothingOpen() {}

  std::string key;                   // below the root
  std::vector<std::string> subKeys;  // some of the subkeys of `key`
  std::string leafKey;               // below `key`; has no subkeys, but the value
  std::string valueName;
  std::string value;

  std::string module;
  std::string function;  // of the module; no parameters, returns 42

  std::string file;
  std::string directory;
  std::string missing;  // no file, program or module
};

// Each test program has one.
std::unique_ptr<World> MakeWorld();

}  // namespace tests
