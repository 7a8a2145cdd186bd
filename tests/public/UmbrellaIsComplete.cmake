# Fails unless HEADER includes each of the EXPECTED headers and nothing else. Export.h is for other headers only.
cmake_minimum_required(VERSION 3.25)

string(REPLACE "," ";" expected "${EXPECTED}")
list(FILTER expected EXCLUDE REGEX "/Export\\.h$|^torvan/(Torvan|Java)\\.h$")
list(LENGTH expected count)
if(count EQUAL 0)
  message(FATAL_ERROR "No headers are expected.")
endif()

file(STRINGS "${HEADER}" included REGEX "^#include <.+>$")
list(TRANSFORM included REPLACE "^#include <(.+)>$" "\\1")

foreach(header IN LISTS expected)
  if(NOT header IN_LIST included)
    message(SEND_ERROR "${HEADER} does not include <${header}>.")
  endif()
endforeach()
foreach(header IN LISTS included)
  if(NOT header IN_LIST expected)
    message(SEND_ERROR "${HEADER} includes <${header}>, which is no public header.")
  endif()
endforeach()
