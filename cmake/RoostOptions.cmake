# Every switch of the build in one place: what is built, how strictly, and the values of the information dictionary.
include(GNUInstallDirs)

option(ROOST_TESTS "Build the tests" OFF)
option(ROOST_BENCH "Build the benchmarks" OFF)
option(ROOST_FUZZ "Build the fuzz targets (clang only)" OFF)
set(ROOST_SANITIZE "" CACHE STRING "Sanitizers to compile and link with, for example address,undefined")

# The information dictionary (model/InfoDictionary.h). A value that still holds "$(" counts as unset.
set(ROOST_BASE_URL "$(ROOST_BASE_URL)" CACHE STRING "RoostBaseURL: origin of the service")
set(ROOST_APP_GROUP "$(ROOST_APP_GROUP)" CACHE STRING "RoostAppGroup: name of the shared folder")
set(ROOST_PRODUCTION_BASE "https://roost.brisken.world" CACHE STRING "Origin used when RoostBaseURL is unset")

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

add_compile_options(
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wno-missing-field-initializers # what an aggregate leaves out has its default
  -Wold-style-cast -Wcast-qual -Wformat=2 -Wundef -Wimplicit-fallthrough -fno-common)
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(ROOST_SANITIZE)
  add_compile_options("-fsanitize=${ROOST_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options("-fsanitize=${ROOST_SANITIZE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With sanitizers g++ 12 suspects the insides of std::regex; the other builds keep the warning.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(ROOST_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link
    "-fsanitize-ignorelist=${CMAKE_CURRENT_SOURCE_DIR}/fuzz/sanitizer-ignorelist.txt")
endif()
