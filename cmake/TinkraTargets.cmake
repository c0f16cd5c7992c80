# Every target is declared through one of these four functions. LINKS is the architecture: a target
# sees the headers of what it links and of nothing else.

include(GoogleTest)

# tinkra_add_library(NAME SOURCES ... [LINKS ...] [PRIVATE_LINKS ...])
# Headers are included as "<NAME>/<File>.h", so the folder above the library is its include root.
function(tinkra_add_library NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${NAME} STATIC ${ARG_SOURCES})
  add_library(Tinkra::${NAME} ALIAS ${NAME})

  # The include root holds one link per library, so that a neighbour that is not linked is not found.
  set(root "${CMAKE_BINARY_DIR}/include/${NAME}")
  file(MAKE_DIRECTORY "${root}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${root}/${NAME}" SYMBOLIC)
  target_include_directories(${NAME} PUBLIC "${root}")

  target_link_libraries(${NAME} PUBLIC ${ARG_LINKS} PRIVATE tinkra_options ${ARG_PRIVATE_LINKS})
endfunction()

# tinkra_add_program(NAME SOURCES ... [LINKS ...])
function(tinkra_add_program NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE tinkra_options ${ARG_LINKS})
  target_include_directories(${NAME} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()

# tinkra_add_test(NAME SOURCES ... [LINKS ...] [LABELS ...])   one GoogleTest program, one CTest entry
function(tinkra_add_test NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;LABELS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE tinkra_options ${ARG_LINKS} GTest::gtest_main GTest::gmock)
  target_include_directories(${NAME} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
  target_compile_definitions(${NAME} PRIVATE TINKRA_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/Data")
  add_test(NAME ${NAME} COMMAND ${NAME} --gtest_brief=1)
  set_tests_properties(${NAME} PROPERTIES TIMEOUT 300 LABELS "unit;${ARG_LABELS}")
endfunction()

# tinkra_add_system_test(NAME [MOUNTS] [FILES ...] [WORKERS n] [ENVIRONMENT K=V ...] [TIMEOUT seconds] [LABELS ...])
# The pytest files of the current folder, or those named, run with Debian's own python (python3-dbusmock lives
# there). Several entries let CTest run them side by side; WORKERS does so with tests that mostly wait. MOUNTS is for
# tests that mount something, which an ordinary user may only do in a namespace.
function(tinkra_add_system_test NAME)
  cmake_parse_arguments(ARG "MOUNTS" "TIMEOUT;WORKERS" "FILES;ENVIRONMENT;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  if(NOT ARG_FILES)
    set(ARG_FILES .)
  endif()
  list(TRANSFORM ARG_FILES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  if(ARG_WORKERS)
    set(workers -n ${ARG_WORKERS})
  endif()
  if(TINKRA_SANITIZE)
    list(APPEND ARG_ENVIRONMENT TINKRA_SANITIZED=1)
  endif()
  set(runner pytest)
  if(ARG_MOUNTS)
    set(runner tinkra_world)
  endif()
  add_test(NAME ${NAME} COMMAND /usr/bin/python3 -m ${runner} -q -p no:cacheprovider ${workers} ${ARG_FILES})
  set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "system;${ARG_LABELS}"
    ENVIRONMENT "PYTHONDONTWRITEBYTECODE=1;PYTHONPATH=${CMAKE_SOURCE_DIR}/Tests;TINKRA_BUILD=${CMAKE_BINARY_DIR};${ARG_ENVIRONMENT}")
endfunction()

# tinkra_add_fuzzer(NAME SOURCE LINKS ...)
# With TINKRA_FUZZERS a libFuzzer program; always a test that replays Corpus/<NAME>.
function(tinkra_add_fuzzer NAME SOURCE)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  set(corpus "${CMAKE_CURRENT_SOURCE_DIR}/Corpus/${NAME}")
  if(TINKRA_FUZZERS)
    add_executable(${NAME} ${SOURCE})
    target_compile_options(${NAME} PRIVATE -fsanitize=fuzzer)
    target_link_options(${NAME} PRIVATE -fsanitize=fuzzer)
    add_test(NAME ${NAME} COMMAND ${NAME} -max_total_time=30 -timeout=10 -rss_limit_mb=2048 ${CMAKE_BINARY_DIR}/corpus/${NAME} ${corpus})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/corpus/${NAME})
  else()
    add_executable(${NAME} ${SOURCE} ${PROJECT_SOURCE_DIR}/Packages/TinkraKit/Fuzzers/ReplayCorpus.cpp)
    add_test(NAME ${NAME} COMMAND ${NAME} ${corpus})
  endif()
  target_link_libraries(${NAME} PRIVATE tinkra_options ${ARG_LINKS})
  set_tests_properties(${NAME} PROPERTIES TIMEOUT 300 LABELS "fuzz")
  add_dependencies(fuzzers ${NAME})
endfunction()
add_custom_target(fuzzers)

# tinkra_add_benchmark(NAME SOURCES ... LINKS ...)   a Google Benchmark program, never part of the test run
function(tinkra_add_benchmark NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  if(TINKRA_BENCHMARKS)
    add_executable(${NAME} ${ARG_SOURCES})
    target_link_libraries(${NAME} PRIVATE tinkra_options ${ARG_LINKS} benchmark::benchmark)
  endif()
endfunction()
