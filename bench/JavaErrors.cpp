// A Java exception caught as torvan::java's Error, compared with the fixed interface where its failures are readable.
#include "Host.h"

namespace bench {
namespace {

constexpr java::StaticMethod<jint(jint)> Fail{"bench/Subject", "fail"};

}  // namespace

void AddJavaErrors() {
  const Host& host = TheHost();
  Row row{"java errors",
          "Java exception caught",
          {Batched("fixed interface",
                   [&host](long) {
                     try {
                       host.subjectClass.CallStaticIntMethod("fail", "(I)I", 3);
                     } catch (const torvan::jni::CJavaException&) {
                       host.env->ExceptionClear();
                       return 1;
                     }
                     return 0;
                   }),
           Batched("class and message",
                   [](long) {
                     try {
                       Fail(3);
                     } catch (const java::Error& error) {
                       return error.Message() ? 1 : 0;
                     }
                     return 0;
                   }),
           Batched("with the trace", [](long) {
             try {
               Fail(3);
             } catch (const java::Error& error) {
               return error.StackTrace().empty() ? 0 : 1;
             }
             return 0;
           })}};
  row.prepare = [] { Require(java::MakeFailuresReadable()); };
  Rows().push_back(std::move(row));
}

}  // namespace bench
