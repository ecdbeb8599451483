# roost_build_small(TARGET): for what waits most of its life, so that memory counts for more than speed there.
function(roost_build_small target)
  target_compile_options(${target} PRIVATE "$<$<CONFIG:Release>:-Os>")
endfunction()

# roost_room(NAME [SMALL] SOURCES … LINKS …): one folder of the house as one static library, `roost_NAME`; SMALL as
# roost_build_small.
function(roost_room name)
  cmake_parse_arguments(ARG "SMALL" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(roost_${name} STATIC ${ARG_SOURCES})
  target_include_directories(roost_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(roost_${name} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
  if(ARG_SMALL)
    roost_build_small(roost_${name})
  endif()
endfunction()

# roost_test(NAME SOURCES … LINKS …): one folder of tests as one program; every test in it is known to ctest by name.
function(roost_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE roost_test_support ${ARG_LINKS})
  target_precompile_headers(${name} REUSE_FROM roost_test_support)
  target_compile_definitions(${name} PRIVATE ROOST_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  # GLib's own pool of small pieces would hide from the leak checker what is lost in it.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 ENVIRONMENT "G_SLICE=always-malloc")
endfunction()
