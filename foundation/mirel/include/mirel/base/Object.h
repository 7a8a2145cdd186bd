// The root of the classes with runtime type records.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/Class.h>

namespace mirel::base {

// A polymorphic object that knows its class and can be compared and cloned.
class MIREL_API CObject : public CBase {
 public:
  virtual ~CObject();

  // Returns the record of the object's class.
  virtual const CClass* GetClass() const;
  // Returns a hash of the object's address.
  virtual int GetHashCode() const;
  // Tells whether the other object equals this one; by default an object equals only itself. Null equals nothing.
  virtual bool Equals(const CObject* other) const;
  // Returns a copy that the caller owns and deletes; by default null.
  virtual CObject* Clone() const;

  // Tells whether the object's class is `type` or inherits from it by the registered parents.
  // The registered parents need not be the C++ bases. False for null.
  bool IsInstanceOf(const CClass* type) const;

  static CClass m_classCObject;

 protected:
  CObject() = default;
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
};

}  // namespace mirel::base
