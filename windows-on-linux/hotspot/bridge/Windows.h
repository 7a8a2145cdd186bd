// What the bridge needs of Windows, declared by hand: it is Unix code, and <windows.h> does not go with Unix headers.
#pragma once

#include <cstddef>
#include <cstdint>

// How 64-bit Windows calls functions. A function of this kind must not touch thread-local variables: g++ takes two
// registers for preserved there that finding the variable changes. It leaves that to a function of the usual kind.
#define WINDOWS_ABI __attribute__((ms_abi))
#define OUT_OF_LINE __attribute__((noinline, noipa))

extern "C" {
WINDOWS_ABI int CloseHandle(void* handle);
WINDOWS_ABI void* CreateThread(void* attributes, std::size_t stackSize, std::uint32_t(WINDOWS_ABI* start)(void*),
                               void* argument, std::uint32_t flags, std::uint32_t* id);
WINDOWS_ABI int FreeEnvironmentStringsW(char16_t* strings);
WINDOWS_ABI void* GetCurrentProcess();
WINDOWS_ABI char16_t* GetEnvironmentStringsW();
WINDOWS_ABI void* GetModuleHandleA(const char* name);
WINDOWS_ABI int GetModuleHandleExW(std::uint32_t flags, const void* addressOrName, void** module);
WINDOWS_ABI void* GetProcAddress(void* module, const char* name);
WINDOWS_ABI void* GetProcessHeap();
WINDOWS_ABI int HeapFree(void* heap, std::uint32_t flags, void* block);
WINDOWS_ABI int MultiByteToWideChar(std::uint32_t codePage, std::uint32_t flags, const char* text, int length,
                                    char16_t* units, int capacity);
WINDOWS_ABI int TerminateProcess(void* process, std::uint32_t exitCode);
WINDOWS_ABI int WideCharToMultiByte(std::uint32_t codePage, std::uint32_t flags, const char16_t* units, int length,
                                    char* text, int capacity, const char* unknown, int* hadUnknown);
}

namespace hotspot {

constexpr std::uint32_t Utf8CodePage = 65001;

// A function of a module, or null.
template <typename Function>
Function FindFunction(void* module, const char* name) {
  return module != nullptr ? reinterpret_cast<Function>(GetProcAddress(module, name)) : nullptr;
}

}  // namespace hotspot
