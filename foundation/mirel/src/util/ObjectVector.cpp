#include <mirel/util/ObjectVector.h>

namespace mirel::util {
namespace {

[[noreturn]] void Refuse(unsigned int line, const char* text) {
  throw base::CIllegalArgumentException("mirel/util/ObjectVector", line, text, nullptr);
}
[[noreturn]] void FailToFind(unsigned int line) {
  throw CNoSuchElementException("mirel/util/ObjectVector", line, nullptr, nullptr);
}

base::CObject* CloneOf(const base::CObject& object) {
  base::CObject* const clone = object.Clone();
  if (clone == nullptr) Refuse(__LINE__, "Object without a clone.");
  return clone;
}

}  // namespace

CObjectVector::CObjectVector(unsigned int initialCapacity, unsigned int increment)
    : m_objects(initialCapacity, increment) {}

CObjectVector::CObjectVector(const CObjectVector& other) : m_objects(other.m_objects) {
  // Holds copies of the other's pointers, which clones replace one by one.
  unsigned int cloned = 0;
  try {
    for (; cloned < GetSize(); ++cloned) m_objects[cloned] = CloneOf(other[cloned]);
  } catch (...) {
    while (cloned != 0) delete m_objects[--cloned];
    throw;
  }
}

CObjectVector::~CObjectVector() { DeleteAll(m_objects); }

CObjectVector& CObjectVector::operator=(const CObjectVector& other) {
  if (this == &other) return *this;
  CObjectVector clones(other);
  CVector<base::CObject*> old(m_objects);
  m_objects = clones.m_objects;
  // Nothing fails from here on: the clones move in, the old objects are deleted.
  while (clones.GetSize() != 0) clones.m_objects.RemoveElementAt(clones.GetSize() - 1);
  DeleteAll(old);
  return *this;
}

void CObjectVector::Add(base::CObject* object) {
  if (object == nullptr) Refuse(__LINE__, "Invalid object.");
  try {
    m_objects.Add(object);
  } catch (...) {
    delete object;
    throw;
  }
}

bool CObjectVector::Contains(const base::CObject* object) const { return IndexOf(object) >= 0; }

void CObjectVector::RemoveElement(const base::CObject* object) {
  const int index = IndexOf(object);
  if (index < 0) FailToFind(__LINE__);
  base::CObject* const removed = m_objects[static_cast<unsigned int>(index)];
  m_objects.RemoveElementAt(static_cast<unsigned int>(index));
  delete removed;
}

void CObjectVector::DeleteAll(CVector<base::CObject*>& objects) {
  for (unsigned int i = 0; i < objects.GetSize(); ++i) delete objects[i];
}

int CObjectVector::IndexOf(const base::CObject* object) const {
  if (object == nullptr) return -1;
  for (unsigned int i = 0; i < GetSize(); ++i) {
    if (m_objects[i]->Equals(object)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace mirel::util
