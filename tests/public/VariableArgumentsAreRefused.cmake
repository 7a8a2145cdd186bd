# Each operation that the public headers declare with `...` must refuse, at compile time, an argument that is no scalar,
# and say how to put it right. COMPILE is the command, HEADERS the folder of the headers, FOLDER one to write to.
cmake_minimum_required(VERSION 3.25)

set(words "a handle is passed as static_cast<jobject>(handle), a text as the handle of a Java string")
# What is passed, in turn.
set(kinds "object" "string" "javaClass" "bytes" "units" "trivial" "1, object" "object, 1.5" "\"x\", nullptr, bytes" "make()")
list(LENGTH kinds kind_count)

set(source [[
#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaString.h>

#include <string>

using namespace torvan::jni;
struct Trivial {
  jint number;
};
CJavaString make();

void Refused(const CJavaVm& vm, const CJavaObject& object, const CJavaClass& javaClass, const CJavaString& string,
             const std::string& bytes, const mirel::base::CUnicodeString& units, const Trivial& trivial) {
]])
string(REGEX MATCHALL "\n" ends "${source}")
list(LENGTH ends line)
set(refused)
foreach(pair JavaVm:vm JavaObject:object JavaClass:javaClass)
  string(REGEX MATCH "^(.+):(.+)$" pair "${pair}")
  set(receiver "${CMAKE_MATCH_2}")
  file(STRINGS "${HEADERS}/torvan/jni/${CMAKE_MATCH_1}.h" declarations REGEX ", \\.\\.\\.\\) const;$")
  foreach(declaration IN LISTS declarations)
    if(NOT declaration MATCHES "^ +([A-Za-z]+) +([A-Za-z]+) *\\((.+), \\.\\.\\.\\) const;$")
      message(FATAL_ERROR "Not understood: ${declaration}")
    endif()
    set(result "${CMAKE_MATCH_1} result = ")
    set(operation "${CMAKE_MATCH_2}")
    set(texts "${CMAKE_MATCH_3}")
    string(REPLACE "void result = " "" result "${result}")
    string(REGEX REPLACE "const char\\* [A-Za-z]+" "\"x\"" texts "${texts}")
    string(REGEX REPLACE "const RX::UniChar\\* [A-Za-z]+" "RX_TEXT(\"x\")" texts "${texts}")
    list(LENGTH refused index)
    math(EXPR index "${index} % ${kind_count}")
    list(GET kinds ${index} kind)
    string(APPEND source "  { ${result}${receiver}.${operation}(${texts}, ${kind}); }\n")
    math(EXPR line "${line} + 1")
    list(APPEND refused ${line})
  endforeach()
endforeach()
string(APPEND source "}\n")
file(WRITE "${FOLDER}/refused.cpp" "${source}")

list(LENGTH refused count)
if(NOT count EQUAL 64)
  message(SEND_ERROR "The public headers declare ${count} operations with `...`, and not 64.")
endif()

# A full path would be an option to compilers whose options begin with a slash.
execute_process(COMMAND ${COMPILE} refused.cpp WORKING_DIRECTORY "${FOLDER}" RESULT_VARIABLE status
                OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(status EQUAL 0)
  message(SEND_ERROR "What must be refused compiles without an error.")
endif()
foreach(line IN LISTS refused)
  if(NOT output MATCHES "refused\\.cpp[:(]${line}[:,)]")
    message(SEND_ERROR "The compiler says nothing of line ${line} of ${FOLDER}/refused.cpp.")
  endif()
endforeach()
# One error for each mistake, and it is this one.
string(REGEX MATCHALL "[:)] (fatal )?error( C[0-9]+)?: [^\n]*" errors "${output}")
list(LENGTH errors error_count)
string(REPLACE "(" "\\(" pattern "${words}")
string(REPLACE ")" "\\)" pattern "${pattern}")
list(FILTER errors EXCLUDE REGEX "${pattern}")
if(errors OR NOT error_count EQUAL count)
  list(JOIN errors "\n" errors)
  message(SEND_ERROR "${count} errors were expected, and there are ${error_count}. These say something else:\n${errors}")
endif()
