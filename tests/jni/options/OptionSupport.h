// What the suites of the in-process options share.
#pragma once

#include <gtest/gtest.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/jni/options/Option.h>

#include <cstdarg>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "ThisSystem.h"
#include "fakes/WideText.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

constexpr const char* ListSeparator = OnThisSystem(";", ":");

// Functions of the types of the hooks.
inline void OnAbort() {}
inline void OnExit(int) {}
inline int OnPrint(FILE*, const char*, va_list) { return 0; }

inline std::string Text(const mirel::base::CUnicodeString& text) { return Narrow(text); }

// What a scripted option and all its clones return. The test owns it.
struct Script {
  std::string name;
  std::vector<std::string>* log = nullptr;
  // The text for the 1st, 2nd ... call. It is made without the root allocator, and copied by it when it is returned.
  std::function<std::string(int)> text = [](int) { return std::string("text"); };
  std::function<void*()> extraInfo = [] { return nullptr; };
  // What the 1st, 2nd ... comparison returns or throws.
  std::function<bool(int)> equals = [](int) { return true; };
  int texts = 0;
  int comparisons = 0;
};

// An option of a host's own class.
class CScriptedOption : public COption {
 public:
  explicit CScriptedOption(Script& script) : m_script(script) {}

  bool Equals(const mirel::base::CObject*) const override { return m_script.equals(++m_script.comparisons); }
  mirel::base::CObject* Clone() const override { return new CScriptedOption(m_script); }
  mirel::base::CUnicodeString GetOptionString() const override {
    Note("GetOptionString");
    return mirel::base::CUnicodeString(Widen(m_script.text(++m_script.texts)).c_str());
  }
  void* GetExtraInfo() const override {
    Note("GetExtraInfo");
    return m_script.extraInfo();
  }

 private:
  void Note(const std::string& call) const {
    if (m_script.log != nullptr) m_script.log->push_back(call + "(" + m_script.name + ")");
  }

  Script& m_script;
};

// A copy equals its original and is independent of it. An assignment returns its left operand.
template <typename T>
void ExpectCopiesAsAValue(const T& first, const T& second) {
  T copy(first);
  EXPECT_TRUE(copy.Equals(&first));
  EXPECT_EQ(Text(copy.GetOptionString()), Text(first.GetOptionString()));
  EXPECT_EQ(copy.GetExtraInfo(), first.GetExtraInfo());

  T& result = copy = second;
  EXPECT_EQ(&result, &copy);
  EXPECT_TRUE(copy.Equals(&second));
  EXPECT_FALSE(copy.Equals(&first));
  EXPECT_EQ(Text(copy.GetOptionString()), Text(second.GetOptionString()));
  EXPECT_EQ(copy.GetExtraInfo(), second.GetExtraInfo());

  const T& itself = copy;
  copy = itself;
  EXPECT_TRUE(copy.Equals(&second));
}

}  // namespace tests
