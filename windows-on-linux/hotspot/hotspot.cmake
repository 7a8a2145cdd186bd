# A Java runtime for Windows programs under Wine: this machine's HotSpot as jvm.dll, and java.exe and javaw.exe.

# The bridge is a Unix library that Wine takes for a DLL, so the machine's own compiler makes it.
set(folder "${CMAKE_BINARY_DIR}/windows-on-linux/hotspot/java")
set(objects)
foreach(source Arguments Environment Hooks Jvm Natives Paths Settlement Threads Tools)
  set(object "${CMAKE_BINARY_DIR}/windows-on-linux/hotspot/${source}.o")
  add_custom_command(
    OUTPUT "${object}"
    COMMAND "${TORVAN_HOST_CXX}" -std=c++17 -O2 -g -fPIC -fvisibility=hidden -Wall -Wextra -Werror
            -isystem "${TORVAN_JDK}/include" -isystem "${TORVAN_JDK}/include/linux" "-DHOTSPOT_HOME=\"${TORVAN_JDK}\""
            -MMD -MF "${object}.d" -c "${CMAKE_CURRENT_LIST_DIR}/bridge/${source}.cpp" -o "${object}"
    DEPENDS "${CMAKE_CURRENT_LIST_DIR}/bridge/${source}.cpp"
    DEPFILE "${object}.d"
    VERBATIM)
  list(APPEND objects "${object}")
endforeach()
set(exports "${CMAKE_CURRENT_LIST_DIR}/bridge/jvm.spec")
add_custom_command(
  OUTPUT "${folder}/jvm.dll"
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
  # A library that does not end in .so would be made a Windows one.
  COMMAND "${TORVAN_WINEGXX}" -m64 -shared "${exports}" ${objects} -o "${folder}/jvm.dll.so" -lkernel32
  COMMAND "${CMAKE_COMMAND}" -E rename "${folder}/jvm.dll.so" "${folder}/jvm.dll"
  DEPENDS "${exports}" ${objects}
  VERBATIM)
add_custom_target(hotspot_library ALL DEPENDS "${folder}/jvm.dll")

foreach(program java javaw)
  add_executable(hotspot_${program} "${CMAKE_CURRENT_LIST_DIR}/JavaProgram.cpp")
  target_link_libraries(hotspot_${program} PRIVATE torvan_jni_headers)
  set_target_properties(hotspot_${program} PROPERTIES OUTPUT_NAME ${program} RUNTIME_OUTPUT_DIRECTORY "${folder}")
  if(MINGW)
    target_link_options(hotspot_${program} PRIVATE -static)
  endif()
  torvan_warnings(hotspot_${program})
endforeach()
if(MINGW)
  target_link_options(hotspot_javaw PRIVATE -mwindows)
else()
  target_link_options(hotspot_javaw PRIVATE /subsystem:windows /entry:mainCRTStartup)
endif()

add_custom_target(hotspot DEPENDS hotspot_library hotspot_java hotspot_javaw)
add_test(NAME hotspot_install
         COMMAND bash "${CMAKE_CURRENT_LIST_DIR}/install-java" ${TORVAN_JAVA_RUNNER} "${folder}")
set_tests_properties(hotspot_install PROPERTIES LABELS realvm FIXTURES_SETUP java)
