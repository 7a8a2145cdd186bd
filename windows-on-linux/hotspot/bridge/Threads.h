// Threads of Windows and threads of HotSpot in one process.
#pragma once

#include <functional>

namespace hotspot {

// Says that the calling thread is one of Windows; every entry from there says so first.
void EnterFromWindows();
bool IsWindowsThread();

// Runs the task on a thread of Windows, this one if it is one, and waits for it: code of Windows does not run on
// HotSpot's own threads.
void RunOnWindowsThread(const std::function<void()>& task);

// Makes the thread that does so. Must be called from a thread of Windows.
void StartServiceThread();

// Ends that: waits for the task that is running, unless the caller is one, and drops what comes later. A process that
// exits takes its threads away wherever they are, and one inside a task may hold a lock of Windows.
void StopServing();

// Puts functions of ours in the place of those by which HotSpot would harm Wine or misunderstand its threads.
void SettleInWine(void* libjvm);

}  // namespace hotspot
