// Texts of the fixed interface, into Java and out of it.
#include <cstring>
#include <string>

#include "Host.h"

namespace bench {
namespace {

using mirel::base::CUnicodeString;
using torvan::jni::CJavaString;

long In(JavaVM* vm, const RX::UniChar* text) {
  const auto length = static_cast<jsize>(std::char_traits<RX::UniChar>::length(text));
  JNIEnv* const env = Attach(vm);
  jstring const made = env->NewString(reinterpret_cast<const jchar*>(text), length);
  CheckOccurred(env);
  jobject const global = Attach(vm)->NewGlobalRef(made);
  Require(global != nullptr);
  benchmark::DoNotOptimize(global);
  Attach(vm)->DeleteGlobalRef(global);
  return 1;
}

long Out(JavaVM* vm, jstring string) {
  JNIEnv* const env = Attach(vm);
  const jchar* const characters = env->GetStringChars(string, nullptr);
  Require(characters != nullptr);
  const auto* const units = reinterpret_cast<const RX::UniChar*>(characters);
  const std::size_t length = std::char_traits<RX::UniChar>::length(units);
  auto* const text = static_cast<RX::UniChar*>(std::malloc((length + 1) * sizeof(RX::UniChar)));
  Require(text != nullptr);
  std::memcpy(text, units, (length + 1) * sizeof(RX::UniChar));
  env->ReleaseStringChars(string, characters);
  benchmark::DoNotOptimize(text);
  const auto result = static_cast<long>(length) + text[0];
  std::free(text);
  return result;
}

}  // namespace

void AddTexts() {
  const Host& host = TheHost();
  JavaVM* const vm = host.vm;
  const auto& fixed = host.fixed;
  static const std::basic_string<RX::UniChar> texts[] = {std::basic_string<RX::UniChar>(16, RX_TEXT('x')),
                                                         std::basic_string<RX::UniChar>(1024, RX_TEXT('x')),
                                                         std::basic_string<RX::UniChar>(1024, RX_TEXT('\x4e2d'))};
  const char* const names[] = {"16 units", "1,024 units", "1,024 units that are not Latin"};
  for (std::size_t i = 0; i < 3; ++i) {
    const RX::UniChar* const text = texts[i].c_str();
    const CJavaString string = fixed.NewString(text);
    Add("texts", std::string(names[i]) + " out",
        {Batched("raw", [=](long) { return Out(vm, static_cast<jstring>(string)); }), Batched("narrow", [=](long) {
           const CUnicodeString copy = string;
           return static_cast<long>(copy.GetLength()) + static_cast<const RX::UniChar*>(copy)[0];
         })});
    Add("texts", std::string(names[i]) + " in",
        {Batched("raw", [=](long) { return In(vm, text); }),
         Batched("narrow", [&fixed, text](long) { return fixed.NewString(text) != mirel::base::CNull() ? 1 : 0; })});
  }
}

}  // namespace bench
