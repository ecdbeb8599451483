# roost_room(NAME SOURCES … LINKS …): one folder of the house as one static library, `roost_NAME`.
function(roost_room name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(roost_${name} STATIC ${ARG_SOURCES})
  target_include_directories(roost_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(roost_${name} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
endfunction()

# roost_test(NAME SOURCES … LINKS …): one folder of tests as one program; every test in it is known to ctest by name.
function(roost_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE roost_test_support ${ARG_LINKS})
  target_precompile_headers(${name} REUSE_FROM roost_test_support)
  target_compile_definitions(${name} PRIVATE ROOST_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
