# Every library from outside, in one place. All of them are packages of Debian (scripts/setup) and of Homebrew
# (.github/workflows/macos.yml).

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(GTest REQUIRED)
if(TINKRA_LINUX)
  find_package(sdbus-c++ REQUIRED)
  pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
  pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)
  pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
endif()
pkg_check_modules(LIBICAL REQUIRED IMPORTED_TARGET libical) # tests and benchmarks compare with it; nothing ships it

# Standalone asio; its one source file is TinkraConcurrency/Asio.cpp. Clang is not among the
# compilers for which asio 1.22 switches coroutines on by itself. Whether it takes memory by std::aligned_alloc depends on
# which headers stand before it, and would differ from file to file.
add_library(tinkra_asio INTERFACE)
find_path(ASIO_INCLUDE_DIR asio/awaitable.hpp REQUIRED)
target_include_directories(tinkra_asio SYSTEM INTERFACE ${ASIO_INCLUDE_DIR})
target_compile_definitions(tinkra_asio INTERFACE
  ASIO_STANDALONE ASIO_SEPARATE_COMPILATION ASIO_NO_DEPRECATED ASIO_DISABLE_STD_ALIGNED_ALLOC
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:ASIO_HAS_CO_AWAIT ASIO_HAS_STD_COROUTINE>)
target_link_libraries(tinkra_asio INTERFACE Threads::Threads)

if(TINKRA_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()

# The interface. Nothing below the views sees Qt.
if(NOT TINKRA_QT_FREE_CORE_ONLY)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Quick QuickTest Svg)
  if(TINKRA_LINUX)
    pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11 xext)
  endif()
  set(QT_QML_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml") # where qmllint looks for modules
  add_library(tinkra_qt INTERFACE)
  target_compile_definitions(tinkra_qt INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
  target_link_libraries(tinkra_qt INTERFACE Qt6::Quick)
endif()
