#include <torvan/jni/options/Hook.h>

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/VfprintfHook.h>

#include "EmptyText.h"
#include "SameClass.h"

namespace torvan::jni::options {

using mirel::base::At;
using mirel::base::CClass;
using mirel::base::CIllegalArgumentException;
using mirel::base::CObject;
using mirel::base::CUnicodeString;
using RX::DefineConstantUTF16CharacterOrString;
using RX::UniChar;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CIllegalArgumentException("jni/options/Hook", line, text, nullptr);
}

// The equality of the hooks that compare their names; `function` is the member with a hook's function.
template <class Hook, class Function>
bool HaveSameNameAndFunction(const Hook& hook, const CObject* other, Function Hook::*function) {
  const Hook* same = SameClass(hook, other);
  return same != nullptr && hook.GetHookName() == same->GetHookName() && hook.*function == same->*function;
}

}  // namespace

CHook::CHook(const UniChar* name) {
  if (IsEmpty(name)) Fail(At(41), "Invalid hook name.");
  m_hookName = name;
}

CHook::CHook(const CHook& other) = default;
CHook::~CHook() = default;
CHook& CHook::operator=(const CHook& other) = default;

const CClass* CHook::GetClass() const { return &m_classCHook; }

CUnicodeString CHook::GetOptionString() const { return m_hookName; }

// The abort hook.

const UniChar* const CAbortHook::HookName = DefineConstantUTF16CharacterOrString(RX_TEXT("abort"));

CAbortHook::CAbortHook(void (*hook)()) : CHook(HookName), m_hook(hook) {
  if (hook == nullptr) Fail(At(95), "Invalid abort hook.");
}

CAbortHook::CAbortHook(const CAbortHook& other) = default;
CAbortHook::~CAbortHook() = default;
CAbortHook& CAbortHook::operator=(const CAbortHook& other) = default;

const CClass* CAbortHook::GetClass() const { return &m_classCAbortHook; }

bool CAbortHook::Equals(const CObject* other) const {
  const CAbortHook* same = SameClass(*this, other);
  // Intentional: both names must exist but are not compared; abort hooks with different names are equal.
  return same != nullptr && static_cast<const UniChar*>(GetHookName()) != nullptr &&
         static_cast<const UniChar*>(same->GetHookName()) != nullptr && m_hook == same->m_hook;
}

CObject* CAbortHook::Clone() const { return new CAbortHook(*this); }

void* CAbortHook::GetExtraInfo() const { return reinterpret_cast<void*>(m_hook); }

// The exit hook.

const UniChar* const CExitHook::HookName = DefineConstantUTF16CharacterOrString(RX_TEXT("exit"));

CExitHook::CExitHook(void (*hook)(int)) : CHook(HookName), m_hook(hook) {
  if (hook == nullptr) Fail(At(174), "Invalid exit hook.");
}

CExitHook::CExitHook(const CExitHook& other) = default;
CExitHook::~CExitHook() = default;
CExitHook& CExitHook::operator=(const CExitHook& other) = default;

const CClass* CExitHook::GetClass() const { return &m_classCExitHook; }

bool CExitHook::Equals(const CObject* other) const { return HaveSameNameAndFunction(*this, other, &CExitHook::m_hook); }

CObject* CExitHook::Clone() const { return new CExitHook(*this); }

void* CExitHook::GetExtraInfo() const { return reinterpret_cast<void*>(m_hook); }

// The vfprintf hook.

const UniChar* const CVfprintfHook::HookName = DefineConstantUTF16CharacterOrString(RX_TEXT("vfprintf"));

CVfprintfHook::CVfprintfHook(int (*hook)(FILE*, const char*, va_list)) : CHook(HookName), m_hook(hook) {
  if (hook == nullptr) Fail(At(253), "Invalid vfprintf hook.");
}

CVfprintfHook::CVfprintfHook(const CVfprintfHook& other) = default;
CVfprintfHook::~CVfprintfHook() = default;
CVfprintfHook& CVfprintfHook::operator=(const CVfprintfHook& other) = default;

const CClass* CVfprintfHook::GetClass() const { return &m_classCVfprintfHook; }

bool CVfprintfHook::Equals(const CObject* other) const {
  return HaveSameNameAndFunction(*this, other, &CVfprintfHook::m_hook);
}

CObject* CVfprintfHook::Clone() const { return new CVfprintfHook(*this); }

void* CVfprintfHook::GetExtraInfo() const { return reinterpret_cast<void*>(m_hook); }

}  // namespace torvan::jni::options
