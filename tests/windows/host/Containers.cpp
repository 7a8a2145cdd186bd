// The templates that a host compiles into itself, with the libraries' allocator and exceptions.
#include "Check.h"

using mirel::base::CNullReferenceException;
using mirel::base::CRef;
using mirel::base::CUnicodeString;
using mirel::util::CHashtable;
using mirel::util::CNoSuchElementException;
using mirel::util::CVector;

namespace {

int s_alive = 0;

struct Shared : mirel::base::CBase {
  Shared() { ++s_alive; }
  virtual ~Shared() { --s_alive; }
  int value = 7;
};

int Descending(const void* left, const void* right) {
  return *static_cast<const int*>(right) - *static_cast<const int*>(left);
}
int Refusing(const void*, const void*) { throw 5; }

using host::IsCaughtAs;
using host::Throws;

void CheckReferences() {
  {
    CRef<Shared> first(new Shared);
    const CRef<Shared> second(first);
    CHECK(first->value == 7);
    CHECK(first != mirel::base::CNull());
    CHECK(second->value == 7);
    first = CRef<Shared>();
    CHECK(s_alive == 1);
    CHECK(Throws<CNullReferenceException>([&] { first->value = 1; }, "mirel/base/Ref", 423, nullptr,
                                          CNullReferenceException::m_classCNullReferenceException));
  }
  CHECK(s_alive == 0);
}

void CheckVector() {
  CVector<int> vector(0, 0);
  for (int i = 0; i < 7; ++i) vector.Add(i);
  CHECK(vector.GetSize() == 7);
  CHECK(vector.GetCapacity() == 10);
  vector.Sort(&Descending);
  CHECK(vector[0] == 6 && vector.GetLast() == 0);
  vector.RemoveElementAt(0);
  CHECK(vector[0] == 5);
  CHECK(Throws<CNoSuchElementException>([&] { vector[6]; }, "mirel/util/Vector", 167, nullptr,
                                        CNoSuchElementException::m_classCNoSuchElementException));
  // The exception passes through the C library.
  CHECK(IsCaughtAs<int>([&] { vector.Sort(&Refusing); }));
}

void CheckHashtable() {
  CHashtable<CUnicodeString, int> table(&mirel::util::GetCUnicodeStringHashCode, 3, 0.75f);
  const wchar_t* const names[] = {L"one", L"two", L"three", L"four", L"five"};
  for (int i = 0; i < 5; ++i) table.Put(names[i], i + 1);
  CHECK(table.GetSize() == 5);
  CHECK(table.Get(L"four") == 4);
  int previous = 0;
  table.Put(L"two", 22, &previous);
  CHECK(previous == 2);
  CHECK(table.Remove(L"two") == 22);
  CHECK(!table.ContainsKey(L"two"));
  CHECK(Throws<CNoSuchElementException>([&] { table.Get(L"two"); }, "mirel/util/Hashtable", 498, nullptr,
                                        CNoSuchElementException::m_classCNoSuchElementException));
}

}  // namespace

void host::CheckContainers() {
  CheckReferences();
  CheckVector();
  CheckHashtable();
}
