// The root of the classes with runtime type records.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/Class.h>

namespace mirel::base {

// A polymorphic object that knows its class, can be compared and cloned.
class MIREL_API CObject : public CBase {
 public:
  virtual ~CObject();

  // Gives the record of the object's class.
  virtual const CClass* GetClass() const;
  // Gives a hash made from the object's address.
  virtual int GetHashCode() const;
  // Tells whether the other object equals this one; by default only this very object does. Null equals nothing.
  virtual bool Equals(const CObject* other) const;
  // Makes a copy that the caller owns and deletes; by default there is none, and the result is null.
  virtual CObject* Clone() const;

  // Tells whether the object's class is `type` or has it among its registered parents.
  // Parents are followed by their registered names, which need not be the C++ bases. False for null.
  bool IsInstanceOf(const CClass* type) const;

  static CClass m_classCObject;

 protected:
  CObject() = default;
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
};

}  // namespace mirel::base
