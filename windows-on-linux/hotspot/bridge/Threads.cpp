#include "Threads.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "Windows.h"

namespace hotspot {

namespace {

__thread bool t_isWindowsThread;
__thread bool t_isServiceThread;

struct Request {
  const std::function<void()>& task;
  bool done = false;
};

std::mutex s_lock;
std::condition_variable s_changed;
std::deque<Request*> s_requests;
bool s_isServing;
bool s_hasStopped;

OUT_OF_LINE void Serve() {
  EnterFromWindows();
  t_isServiceThread = true;
  std::unique_lock<std::mutex> guard(s_lock);
  for (;;) {
    s_changed.wait(guard, [] { return !s_requests.empty(); });
    Request* request = s_requests.front();
    s_requests.pop_front();
    s_isServing = true;
    guard.unlock();
    request->task();
    guard.lock();
    s_isServing = false;
    request->done = true;
    s_changed.notify_all();
  }
}

WINDOWS_ABI std::uint32_t ServiceThread(void*) {
  Serve();
  return 0;
}

}  // namespace

OUT_OF_LINE void EnterFromWindows() { t_isWindowsThread = true; }

OUT_OF_LINE bool IsWindowsThread() { return t_isWindowsThread; }

void RunOnWindowsThread(const std::function<void()>& task) {
  if (IsWindowsThread()) {
    task();
    return;
  }
  Request request{task};
  std::unique_lock<std::mutex> guard(s_lock);
  if (s_hasStopped) return;
  s_requests.push_back(&request);
  s_changed.notify_all();
  s_changed.wait(guard, [&request] { return request.done; });
}

void StartServiceThread() {
  static std::once_flag started;
  std::call_once(started, [] {
    std::uint32_t id = 0;
    void* thread = CreateThread(nullptr, 0x100000, &ServiceThread, nullptr, 0, &id);
    if (thread != nullptr) CloseHandle(thread);
  });
}

void StopServing() {
  std::unique_lock<std::mutex> guard(s_lock);
  s_hasStopped = true;
  for (Request* request : s_requests) request->done = true;
  s_requests.clear();
  s_changed.notify_all();
  // Not for ever: the task may be one that wants to end the process, too.
  if (!t_isServiceThread) s_changed.wait_for(guard, std::chrono::seconds(5), [] { return !s_isServing; });
}

}  // namespace hotspot
