// HotSpot's own threads are made as threads of Windows, so each can run the host's code.
#pragma once

#include <jni.h>
#include <pthread.h>

#include <cstddef>

namespace hotspot {

// Wine's own guard pages at the low end of a thread's stack.
constexpr std::size_t GuardedByWine = 0x10000;

// Marks the calling thread as one of Windows; every entry from there says so first.
void EnterFromWindows();
bool IsWindowsThread();

// pthread_create for HotSpot, whose threads are detached: makes a thread of Windows, with a stack of the size in the
// attributes. One that another kind of thread asks for is a plain one.
int CreateHotSpotThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument);

// The size of stack that HotSpot has asked for when it made the calling thread; 0 in other threads.
std::size_t AskedStackSize();

// JVM_StartThread, by which Java starts a thread. Its thread of Windows begins before the VM is entered: it may wait
// for one that ends, which may wait for the VM.
void StartJavaThread(JNIEnv* env, jobject thread);

// Puts functions of ours in the place of those by which HotSpot, or Java's own library, would harm Wine or
// misunderstand its threads.
void SettleInWine(void* library);

}  // namespace hotspot
