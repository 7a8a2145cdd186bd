set(sources
  CFunctions.cpp
  Chrono.cpp
  Errors.cpp
  ExceptionPointers.cpp
  Exceptions.cpp
  Files.cpp
  Folders.cpp
  Futures.cpp
  Paths.cpp
  Pointers.cpp
  Streams.cpp
  Text.cpp
  Threads.cpp
  TypeNames.cpp
)
list(TRANSFORM sources PREPEND "${CMAKE_CURRENT_LIST_DIR}/")
add_library(msvc_abi_libcxx STATIC EXCLUDE_FROM_ALL ${sources})
# In front of libc++'s own headers.
target_include_directories(msvc_abi_libcxx PUBLIC "${CMAKE_CURRENT_LIST_DIR}/include")
torvan_warnings(msvc_abi_libcxx)
