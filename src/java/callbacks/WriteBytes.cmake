# Writes the bytes of a Java class file as a C++ header: cmake -D CLASS=file -D HEADER=file -P WriteBytes.cmake
file(READ "${CLASS}" bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${HEADER}" "// Made of src/java/callbacks/Handler.java by the build.
#pragma once

namespace torvan::java::detail {

constexpr char HandlerName[] = \"torvan/java/Handler_0000000000000000\";
constexpr unsigned char HandlerBytes[] = {
${bytes}
};

}  // namespace torvan::java::detail
")
