# The language, the warnings and the sanitizers, the same for every target.

# GCC before 13 corrupts memory for aggregate temporaries inside a co_await expression: stop early.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  message(FATAL_ERROR "GCC ${CMAKE_CXX_COMPILER_VERSION} miscompiles coroutines. "
                      "Use Clang 16 (the presets do) or GCC 13 and newer.")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(TINKRA_SANITIZE "" CACHE STRING "Sanitizers for every target, for example address,undefined")
option(TINKRA_FUZZERS "Build the libFuzzer targets (Clang)" OFF)
option(TINKRA_BENCHMARKS "Build the benchmarks" ON)
option(TINKRA_QT_FREE_CORE_ONLY "Build the portable libraries and their tests alone" OFF)

# Which operating system is built for: the one place where that is decided.
if(APPLE OR TINKRA_QT_FREE_CORE_ONLY)
  set(TINKRA_LINUX OFF)
else()
  set(TINKRA_LINUX ON)
endif()
if(APPLE)
  set(TINKRA_SYSTEM TinkraSystemMac)
  set(TINKRA_DESKTOP TinkraDesktopMac)
else()
  set(TINKRA_SYSTEM TinkraSystemLinux)
  set(TINKRA_DESKTOP TinkraDesktopLinux)
endif()

add_library(tinkra_options INTERFACE)
target_compile_options(tinkra_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wimplicit-fallthrough -Wnull-dereference -Wdouble-promotion
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

if(TINKRA_SANITIZE)
  target_compile_options(tinkra_options INTERFACE
    -fsanitize=${TINKRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # An empty optional that is read, an index out of range: libstdc++ checks what the sanitizers cannot see.
  target_compile_definitions(tinkra_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(tinkra_options INTERFACE -fsanitize=${TINKRA_SANITIZE})
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND NOT APPLE)
  add_link_options(-fuse-ld=lld)
endif()
