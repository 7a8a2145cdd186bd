// Vectors of counted elements, and what they hold.
#pragma once

#include "foundation/mirel/util/ContainerTest.h"

#include <mirel/base/MemoryException.h>
#include <mirel/util/Vector.h>

namespace tests {

using mirel::util::CVector;

struct VectorFields {
  const void* elements;
  unsigned int size;
  unsigned int capacity;
  unsigned int increment;
};

// Makes a vector whose capacity is its size rounded up to the increment. The counts start with its elements.
inline CVector<Counted> VectorOf(const std::vector<int>& values, unsigned int increment) {
  CVector<Counted> vector(0, increment);
  for (int value : values) vector.Add(value);
  Counted::tally.ForgetDone();
  return vector;
}

// A vector of a size that no machine can fill: only its fields are written, there are no elements.
class FullVector {
 public:
  FullVector(unsigned int size, unsigned int increment) : m_empty(FieldsOf<VectorFields>(m_vector)) {
    Write({m_empty.elements, size, size, increment});
  }
  ~FullVector() { Write(m_empty); }
  FullVector(const FullVector&) = delete;
  FullVector& operator=(const FullVector&) = delete;

  CVector<char>& operator*() { return m_vector; }

 private:
  void Write(const VectorFields& fields) { std::memcpy(static_cast<void*>(&m_vector), &fields, sizeof(fields)); }

  CVector<char> m_vector{0, 1};
  const VectorFields m_empty;
};

inline std::vector<int> ValuesOf(const CVector<Counted>& vector) {
  std::vector<int> values;
  for (unsigned int i = 0; i < vector.GetSize(); ++i) values.push_back(vector[i].Value());
  return values;
}

}  // namespace tests
