#include "Threads.h"

#include <condition_variable>
#include <deque>
#include <mutex>

#include "Windows.h"

namespace hotspot {

namespace {

__thread bool t_isWindowsThread;

struct Request {
  const std::function<void()>& task;
  bool done = false;
};

std::mutex s_lock;
std::condition_variable s_changed;
std::deque<Request*> s_requests;

OUT_OF_LINE void Serve() {
  EnterFromWindows();
  std::unique_lock<std::mutex> guard(s_lock);
  for (;;) {
    s_changed.wait(guard, [] { return !s_requests.empty(); });
    Request* request = s_requests.front();
    s_requests.pop_front();
    guard.unlock();
    request->task();
    guard.lock();
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

}  // namespace hotspot
