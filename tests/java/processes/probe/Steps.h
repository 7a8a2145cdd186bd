// What the steps of the probe ask of the system.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tests {

// Of the command line: the next text or number. Both end with the last step: then "" and 0.
std::string Next();
long NextNumber();
// Writes to the output.
void Put(const std::string& text);
// The program as it was called.
std::string OwnPath();

using Steps = std::map<std::string, std::function<void()>>;

// The system's part. Texts are UTF-8.

// The steps that only this system has.
Steps SystemSteps();

std::vector<std::string> AllArguments(int count, char** arguments);
std::vector<std::string> AllVariables();
// What is in a file in the system's own encoding.
std::string FromSystem(const std::string& bytes);
// Starts the program again with other steps, and returns the new process's id. `apart` is in its own process
// group, on Windows without the console.
unsigned long Again(const std::string& steps, bool apart);
void IgnoreRequestsToStop();
void ExitWhenAskedToStop(int code);
void Raise(int signal);
unsigned long OwnId();
void UseBinaryStreams();
// Waits until the input has something, and reads what it has. Returns how much that is; 0 at its end.
std::size_t ReadInput(char* piece, std::size_t size);

}  // namespace tests
