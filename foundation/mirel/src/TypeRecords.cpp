// The runtime type records of the foundation library.
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/util/NoSuchElementException.h>

using mirel::base::CClass;

// clang-format off
#define MIREL_RECORD(Scope, Class, Parent) \
  CClass Scope::Class::m_class##Class(#Scope "::" #Class, Parent, nullptr, nullptr, sizeof(Scope::Class), nullptr)

//           namespace         class                      registered parent
MIREL_RECORD(mirel::base,      CObject,                   "mirel::base::CBase");
MIREL_RECORD(mirel::base,      CException,                "mirel::base::CObject");
MIREL_RECORD(mirel::base,      CIllegalArgumentException, "mirel::base::CException");
MIREL_RECORD(mirel::base,      CMemoryException,          "mirel::base::CException");
MIREL_RECORD(mirel::base,      CNullReferenceException,   "mirel::base::CException");
MIREL_RECORD(mirel::base::win, CWinSystemErrorException,  "mirel::base::CException");
MIREL_RECORD(mirel::util,      CNoSuchElementException,   "mirel::base::CException");

#undef MIREL_RECORD
// clang-format on
