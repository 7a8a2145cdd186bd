// A program that stands in for Java: what follows after the class "Probe" on its command line are steps, done in order.
//
// arguments ...     writes each argument that follows, ended by a zero, and is the last step
// environment       writes each variable, ended by a zero
// folder            writes the current folder
// descriptors       writes the numbers of the open descriptors (Linux)
// handle N          writes whether the handle with this value is there (Windows)
// window            writes whether the console has one (Windows)
// says TEXT         writes the text to the output; complains TEXT: to the error output
// echo              copies the input to the output, until its end
// flood N           writes N bytes "o" to the output and N bytes "e" to the error output while it reads the input to
// its
//                   end; then writes how many bytes that were, as a line
// leaves MS         starts a process that writes "late" after so many milliseconds, writes its id as a line, and does
// not
//                   wait for it
// tree MS           starts a child, which starts a child, which is in a group (session) of its own and has a child; all
// of
//                   them wait so long; writes their ids, one a line
// deaf              does not listen to requests to stop
// orderly N         ends with exit code N when it is asked to stop
// sleep MS
// signal N          raises it
// exit N
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After <windows.h>, which it needs.
#include <shellapi.h>
#else
#include <dirent.h>
#include <unistd.h>
#include <csignal>
#endif

namespace {

std::vector<std::string> g_steps;
std::size_t g_at = 0;
std::string g_program;

std::string Next() { return g_at < g_steps.size() ? g_steps[g_at++] : ""; }
long NextNumber() { return std::strtol(Next().c_str(), nullptr, 10); }

void Put(std::FILE* to, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), to);
  std::fflush(to);
}
void Put(const std::string& text) { Put(stdout, text); }
void PutZeroEnded(const std::string& text) { std::fwrite(text.c_str(), 1, text.size() + 1, stdout); }

void SleepNow() { std::this_thread::sleep_for(std::chrono::milliseconds(NextNumber())); }

std::string ReadPiece() {
  static char piece[65536];
  return std::string(piece, std::fread(piece, 1, sizeof piece, stdin));
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

#if defined(_WIN32)

std::string Utf8(const wchar_t* text) {
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

std::vector<std::string> AllArguments(int, char**) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> all;
  for (int i = 0; i < count; ++i) all.push_back(Utf8(arguments[i]));
  LocalFree(arguments);
  return all;
}

void Environment() {
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* variable = all; *variable != L'\0'; variable += std::wcslen(variable) + 1) {
    PutZeroEnded(Utf8(variable));
  }
  FreeEnvironmentStringsW(all);
}

void Folder() { Put(std::filesystem::current_path().u8string()); }

void Handle() {
  const auto handle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(NextNumber()));
  DWORD flags = 0;
  Put(GetHandleInformation(handle, &flags) != 0 ? "there" : "not there");
}

void Window() { Put(GetConsoleWindow() != nullptr ? "window" : "none"); }

// Starts this program again with other steps, in a process group and without the console where it is to be `apart`.
unsigned long Again(const std::string& steps, bool apart) {
  std::wstring line =
      L"\"" + std::filesystem::u8path(g_program).wstring() + L"\" Probe " + std::filesystem::u8path(steps).wstring();
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                 apart ? CREATE_NEW_PROCESS_GROUP | DETACHED_PROCESS : 0UL, nullptr, nullptr, &start, &process);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

int g_code = -1;
BOOL WINAPI OnControl(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  if (g_code >= 0) ExitProcess(static_cast<UINT>(g_code));
  return TRUE;
}
void Deaf() { SetConsoleCtrlHandler(OnControl, TRUE); }
void Orderly() {
  g_code = static_cast<int>(NextNumber());
  SetConsoleCtrlHandler(OnControl, TRUE);
}
void Signal() { RaiseException(0xC0000005, 0, 0, nullptr); }
unsigned long OwnId() { return GetCurrentProcessId(); }
void Descriptors() {}

void Binary() {
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

#else

std::vector<std::string> AllArguments(int count, char** arguments) { return {arguments, arguments + count}; }

void Environment() {
  for (char** variable = environ; *variable != nullptr; ++variable) PutZeroEnded(*variable);
}

void Folder() { Put(std::filesystem::current_path().string()); }

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

unsigned long Again(const std::string& steps, bool apart) {
  std::vector<std::string> arguments = {g_program, "Probe"};
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

int g_code = 0;
void Deaf() { std::signal(SIGTERM, SIG_IGN); }
void Orderly() {
  g_code = static_cast<int>(NextNumber());
  std::signal(SIGTERM, [](int) { _exit(g_code); });
}
void Signal() { std::raise(static_cast<int>(NextNumber())); }
unsigned long OwnId() { return static_cast<unsigned long>(getpid()); }
void Handle() {}
void Window() {}
void Binary() {}

#endif

void Leaves() { Put(std::to_string(Again("sleep " + std::to_string(NextNumber()) + " says late", false)) + "\n"); }

// Each level writes its own id and starts the next; the second one stands apart.
void Tree() {
  const std::string time = std::to_string(NextNumber());
  const std::string level = Next();
  const int depth = level.empty() ? 0 : std::atoi(level.c_str());
  Put(std::to_string(OwnId()) + "\n");
  if (depth < 3) Again("tree " + time + " " + std::to_string(depth + 1), depth == 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(time.c_str())));
}

void Arguments() {
  while (g_at < g_steps.size()) PutZeroEnded(Next());
}

void Echo() {
  for (std::string piece; !(piece = ReadPiece()).empty();) Put(piece);
}

}  // namespace

int main(int count, char** arguments) {
  Binary();
  const std::vector<std::string> all = AllArguments(count, arguments);
  g_program = all[0];
  for (std::size_t i = 1; i < all.size(); ++i) {
    if (all[i] == "Probe") {
      g_steps.assign(all.begin() + static_cast<std::ptrdiff_t>(i) + 1, all.end());
      break;
    }
  }
  const std::map<std::string, std::function<void()>> steps = {
      {"arguments", Arguments},
      {"environment", Environment},
      {"folder", Folder},
      {"descriptors", Descriptors},
      {"handle", Handle},
      {"window", Window},
      {"says", [] { Put(Next()); }},
      {"complains", [] { Put(stderr, Next()); }},
      {"echo", Echo},
      {"flood", Flood},
      {"leaves", Leaves},
      {"tree", Tree},
      {"deaf", Deaf},
      {"orderly", Orderly},
      {"sleep", SleepNow},
      {"signal", Signal},
      {"exit", [] { std::exit(static_cast<int>(NextNumber())); }},
  };
  while (g_at < g_steps.size()) {
    const auto step = steps.find(Next());
    if (step == steps.end()) return 126;
    step->second();
  }
  std::fflush(stdout);
}
