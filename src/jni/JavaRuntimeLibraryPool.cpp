#include "jni/JavaRuntimeLibraryPool.h"

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/util/HashCode.h>
#include <torvan/JavaRuntimeException.h>

#include <utility>

#include "EmptyText.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace torvan::jni {

using mirel::base::At;
using mirel::base::CException;
using mirel::base::CRef;
using mirel::base::CUnicodeString;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaRuntimeException("jni/JavaRuntimeLibraryPool", line, text, nullptr);
}
[[noreturn]] void Refuse(unsigned int line, const char* text) {
  throw mirel::base::CIllegalArgumentException("jni/JavaRuntimeLibraryPool", line, text, nullptr);
}

// Returns what `get` returns. Failures that a host can tell apart pass; the others are printed and become one failure
// at `line`.
template <typename Get>
CRef<CJavaRuntimeLibraryRef> TranslateFailures(At line, Get get) {
  try {
    return get();
  } catch (const CJavaRuntimeException&) {
    throw;
  } catch (const mirel::base::CMemoryException&) {
    throw;
  } catch (const CException& exception) {
    PrintToDebugOut(exception);
    Fail(line, "Failed to get the specified Java Runtime library.");
  }
}

}  // namespace

// Has no destructor, so that a reference can ask for the pool after all static objects are destroyed.
CJavaRuntimeLibraryPool* CJavaRuntimeLibraryPool::s_instance = nullptr;

CJavaRuntimeLibraryPool::CJavaRuntimeLibraryPool() : m_entries(mirel::util::GetCUnicodeStringHashCode, 101, 0.75f) {}

CJavaRuntimeLibraryPool* CJavaRuntimeLibraryPool::GetInstance() {
  struct Holder {
    // The pool counts as destroyed before its libraries are unloaded.
    ~Holder() { delete std::exchange(s_instance, nullptr); }
  };
  static Holder holder;
  if (s_instance == nullptr) s_instance = new CJavaRuntimeLibraryPool();
  return s_instance;
}

CRef<CJavaRuntimeLibraryRef> CJavaRuntimeLibraryPool::Get(const RX::UniChar* path) {
  if (IsEmpty(path)) Refuse(At(55), "Invalid Java Runtime library path.");
  return TranslateFailures(At(89), [this, path] {
    const CUnicodeString key(path);
    return m_entries.ContainsKey(key) ? Share(key) : LoadAndEnter(new CWinJavaRuntimeLibraryImpl(path));
  });
}

CRef<CJavaRuntimeLibraryRef> CJavaRuntimeLibraryPool::Get(CDynamicJavaRuntime::VmVendor vendor,
                                                          CDynamicJavaRuntime::VmType type,
                                                          const RX::UniChar* version) {
  return TranslateFailures(At(131), [this, vendor, type, version] {
    const CRef<CJavaRuntimeLibraryImpl> library(new CWinJavaRuntimeLibraryImpl(vendor, type, version));
    const CUnicodeString& key = library->GetPath();
    return m_entries.ContainsKey(key) ? Share(key) : LoadAndEnter(library);
  });
}

CRef<CJavaRuntimeLibraryRef> CJavaRuntimeLibraryPool::Share(const CUnicodeString& path) {
  Entry& entry = m_entries.Get(path);
  // The reference names the pool only when nothing can fail any more.
  const CRef<CJavaRuntimeLibraryRef> reference(new CJavaRuntimeLibraryRef(nullptr, entry.library));
  ++entry.useCount;
  reference->m_pool = this;
  return reference;
}

CRef<CJavaRuntimeLibraryRef> CJavaRuntimeLibraryPool::LoadAndEnter(const CRef<CJavaRuntimeLibraryImpl>& library) {
  (*library).Load();
  const CRef<CJavaRuntimeLibraryRef> reference(new CJavaRuntimeLibraryRef(nullptr, library));
  m_entries.Put(library->GetPath(), Entry{library, 1});
  reference->m_pool = this;
  return reference;
}

void CJavaRuntimeLibraryPool::Release(CJavaRuntimeLibraryRef& reference) {
  try {
    GiveBack(reference);
  } catch (const CException& exception) {
    PrintToDebugOut(exception);
  }
}

void CJavaRuntimeLibraryPool::GiveBack(CJavaRuntimeLibraryRef& reference) {
  // The key is not copied: ending a use must not need memory.
  const CUnicodeString& key = reference.m_library->GetPath();
  Entry& entry = m_entries.Get(key);
  if (entry.useCount != 0) --entry.useCount;
  if (entry.useCount != 0) return;
  // Intentional: the entry releases its library first; if unloading fails in another way than below, the path stays in
  // the table without a library.
  entry.library = nullptr;
  try {
    reference.m_library->Unload();
  } catch (const CJavaRuntimeException&) {
    // The use ends even so.
  }
  m_entries.Remove(key);
}

}  // namespace torvan::jni
