// The members of CJavaObject and CJavaClass that read, write and call, as one table.
#pragma once

#include <torvan/jni/JavaClass.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "fakes/FakeJvm.h"

namespace tests {

// The objects that a member is used on, in their own VM.
struct Target {
  FakeJvm& jvm;
  torvan::jni::CJavaObject object;    // global:1
  torvan::jni::CJavaClass javaClass;  // global:2
  torvan::jni::CJavaObject value;     // global:3, passed to setters
  torvan::jni::CJavaObject nothing;   // null, passed to setters
  jobject local;                      // local:3, passed to callers and returned by Java
};

// One overload of one member.
struct Member {
  std::string name;
  bool wide;
  std::string slot;       // the JNI function that does it
  std::string signature;  // of the Java member that it is tried with
  bool givesObject;
  std::vector<std::string> given;  // for each sample of its type, how the log shows what is passed

  bool IsStatic() const { return name.find("Static") != std::string::npos; }
  bool IsNonvirtual() const { return name.find("Nonvirtual") != std::string::npos; }
  bool IsMethod() const { return name.find("Call") == 0; }

  // Scripts the slot to return the sample with this number, or to take and check it.
  std::function<void(const Target& target, std::size_t sample)> script;
  // Uses the member with the sample and checks its result. The name is UTF-8, whatever the overload takes.
  std::function<void(const Target& target, const std::string& javaName, std::size_t sample)> use;
};

inline std::ostream& operator<<(std::ostream& out, const Member& member) {
  return out << member.name << (member.wide ? " wide" : " narrow");
}

const std::vector<Member>& AllMembers();

}  // namespace tests
