# What every target of this project shares: language level, warnings, visibility, output folders.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(MSVC)
  # Functions of C linkage may let exceptions pass: qsort's comparison and a VM's functions can throw.
  string(REPLACE "/EHsc" "/EHs" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
endif()

# One folder for programs and libraries: a Windows program finds its DLLs beside itself.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

set(TORVAN_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
if(TORVAN_SANITIZE)
  add_compile_options(-fsanitize=${TORVAN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TORVAN_SANITIZE})
endif()

# Compiler warnings are errors in our own code; third-party targets do not get them.
function(torvan_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX /permissive- /utf-8)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wold-style-cast
                                             -Wcast-qual -Wundef -Woverloaded-virtual)
  endif()
endfunction()

# A shared library NAME with the file name OUTPUT, the alias torvan::NAME and the sources given.
function(torvan_shared_library name output)
  add_library(${name} SHARED ${ARGN})
  add_library(torvan::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${output})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
  else()
    # Calls inside a library stay inside it; exported data and type information are still shared.
    target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
    if(NOT TORVAN_SANITIZE)
      target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
  torvan_warnings(${name})
endfunction()
