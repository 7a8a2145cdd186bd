// A base class that forbids copies.
#pragma once

namespace mirel::base {

// Derived classes can be neither copied nor assigned.
class CNonCopyable {
 protected:
  CNonCopyable() = default;
  ~CNonCopyable() = default;

 public:
  CNonCopyable(const CNonCopyable&) = delete;
  CNonCopyable& operator=(const CNonCopyable&) = delete;
};

}  // namespace mirel::base
