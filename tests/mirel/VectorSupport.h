// Vectors of counted elements, and what they hold.
#pragma once

#include "ContainerTest.h"

#include <mirel/base/MemoryException.h>
#include <mirel/util/Vector.h>

namespace containers {

using mirel::util::CVector;

struct VectorFields {
  const void* elements;
  unsigned int size;
  unsigned int capacity;
  unsigned int increment;
};

// Makes a vector with no room to spare but to the next increment; the tally then knows of the elements only.
inline CVector<Counted> VectorOf(const std::vector<int>& values, unsigned int increment) {
  CVector<Counted> vector(0, increment);
  for (int value : values) vector.Add(value);
  Counted::tally.ForgetDone();
  return vector;
}

inline std::vector<int> ValuesOf(const CVector<Counted>& vector) {
  std::vector<int> values;
  for (unsigned int i = 0; i < vector.GetSize(); ++i) values.push_back(vector[i].Value());
  return values;
}

}  // namespace containers
