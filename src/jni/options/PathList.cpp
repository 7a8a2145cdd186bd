#include <torvan/jni/options/PathList.h>

#include <mirel/base/UnicodeStringBuffer.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/LibraryPath.h>

#include "SameClass.h"
#include "platform/Conventions.h"

namespace torvan::jni::options {

using mirel::base::CClass;
using mirel::base::CObject;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

CPathList::CPathList(const RX::UniChar* name) : CSystemProperty(name), m_paths(10, 5) {}
CPathList::CPathList(const CPathList& other) = default;
CPathList::~CPathList() = default;
CPathList& CPathList::operator=(const CPathList& other) = default;

void CPathList::AddPath(const RX::UniChar* path) { m_paths.Add(path); }

unsigned int CPathList::GetPathCount() const noexcept { return m_paths.GetSize(); }

const CUnicodeString& CPathList::GetPathAt(unsigned int index) const { return m_paths[index]; }

const CClass* CPathList::GetClass() const { return &m_classCPathList; }

bool CPathList::Equals(const CObject* other) const {
  const CPathList* same = SameClass(*this, other);
  return same != nullptr && GetName() == same->GetName() && m_paths == same->m_paths;
}

CUnicodeString CPathList::GetOptionString() const {
  const unsigned int count = GetPathCount();
  if (count == 0) return CUnicodeString(RX_TEXT(""));
  CUnicodeStringBuffer text(256 * count);
  text += RX_TEXT("-D");
  text += GetName();
  text += RX_TEXT('=');
  for (unsigned int i = 0; i < count; ++i) {
    text += GetPathAt(i);
    // Intentional: the separator follows every path, so the text ends with one.
    text += platform::PathListSeparator;
  }
  return text.ToString();
}

CClassPath::CClassPath() : CPathList(ClassPath) {}
CClassPath::CClassPath(const CClassPath& other) = default;
CClassPath::~CClassPath() = default;
CClassPath& CClassPath::operator=(const CClassPath& other) = default;

const CClass* CClassPath::GetClass() const { return &m_classCClassPath; }

CObject* CClassPath::Clone() const { return new CClassPath(*this); }

CLibraryPath::CLibraryPath() : CPathList(LibraryPath) {}
CLibraryPath::CLibraryPath(const CLibraryPath& other) = default;
CLibraryPath::~CLibraryPath() = default;
CLibraryPath& CLibraryPath::operator=(const CLibraryPath& other) = default;

const CClass* CLibraryPath::GetClass() const { return &m_classCLibraryPath; }

CObject* CLibraryPath::Clone() const { return new CLibraryPath(*this); }

}  // namespace torvan::jni::options
