#include "Threads.h"

#include <semaphore.h>
#include <cerrno>
#include <csignal>

#include "Windows.h"

namespace hotspot {

namespace {

__thread bool t_isWindowsThread;

struct Start {
  void* (*function)(void*);
  void* argument;
  pthread_t thread{};
  sem_t isRunning{};
};

OUT_OF_LINE void Run(Start& start) {
  EnterFromWindows();
  // By this signal Wine takes threads away when the process exits, wherever they are. They may hold locks of the C
  // library then, which the end of the process needs.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGQUIT);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  const auto function = start.function;
  void* const argument = start.argument;
  start.thread = pthread_self();
  sem_post(&start.isRunning);
  function(argument);
}

WINDOWS_ABI std::uint32_t HotSpotThread(void* start) {
  Run(*static_cast<Start*>(start));
  return 0;
}

}  // namespace

OUT_OF_LINE void EnterFromWindows() { t_isWindowsThread = true; }

OUT_OF_LINE bool IsWindowsThread() { return t_isWindowsThread; }

int CreateHotSpotThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*), void* argument) {
  if (!IsWindowsThread()) return pthread_create(thread, attributes, function, argument);
  std::size_t stackSize = 0;
  pthread_attr_getstacksize(attributes, &stackSize);
  constexpr std::uint32_t sizeIsReserved = 0x10000;
  Start start{function, argument};
  sem_init(&start.isRunning, 0, 0);
  std::uint32_t id = 0;
  void* const handle = CreateThread(nullptr, stackSize + GuardedByWine, &HotSpotThread, &start, sizeIsReserved, &id);
  if (handle != nullptr) {
    while (sem_wait(&start.isRunning) != 0) continue;
    CloseHandle(handle);
    *thread = start.thread;
  }
  sem_destroy(&start.isRunning);
  return handle != nullptr ? 0 : EAGAIN;
}

}  // namespace hotspot
