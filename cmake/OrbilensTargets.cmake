# Helpers that every folder of the tree uses, so that a target is declared in one way only.

# orbilens_library(<name> SOURCES <files...> [PUBLIC <libraries...>] [PRIVATE <libraries...>])
# One static library for one folder of src/; headers are included from src/ downwards.
function(orbilens_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
  orbilens_warnings(${name})
  orbilens_fuzz_coverage(${name})
endfunction()

# orbilens_plugin(<name> SOURCES <files...> [PRIVATE <libraries...>])
# What the program loads by name at run time: in the program's folder, and once installed in the
# library folder that belongs to it.
function(orbilens_plugin name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PRIVATE" ${ARGN})
  add_library(${name} MODULE ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PRIVATE ${ARG_PRIVATE})
  set_target_properties(${name} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/src/app"
    CXX_VISIBILITY_PRESET hidden)
  orbilens_warnings(${name})
  orbilens_fuzz_coverage(${name})
  install(TARGETS ${name} LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/orbilens-player")
  set_property(GLOBAL APPEND PROPERTY ORBILENS_PLUGINS ${name})
endfunction()

# Without this the fuzzer sees the coverage of its own target's source only, and fuzzes blind.
function(orbilens_fuzz_coverage name)
  if(ORBILENS_BUILD_FUZZ)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

function(orbilens_warnings name)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wno-unknown-pragmas
    # Qt's logging macros are called without their optional arguments.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>)
  # Qt 5.15 deprecates what is still the only way to do some things on it.
  target_compile_definitions(${name} PRIVATE QT_NO_DEPRECATED_WARNINGS QT_NO_FOREACH)
endfunction()

# What runs without a screen, all that the daily run needs of the sanitized tree: the suites labelled
# unit alone and the fuzz targets.
add_custom_target(screenless)

# orbilens_test(<name> SOURCES <files...> LIBRARIES <libraries...> LABELS <labels...>
#               [GUI] [TIMEOUT <seconds>])
# One test program. GUI gives it the QApplication main of tests/support, otherwise the core one.
# Programs labelled gl or media run a second time under the threaded render loop, because the
# basic loop draws on the GUI thread and so hides faults between threads.
function(orbilens_test name)
  cmake_parse_arguments(ARG "GUI;OWN_MAIN" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  set(main_library orbilens_test_main_core)
  if(ARG_GUI)
    set(main_library orbilens_test_main_gui)
  endif()
  if(ARG_OWN_MAIN)
    set(main_library orbilens_test_support)
  endif()
  target_link_libraries(${name} PRIVATE ${main_library} ${ARG_LIBRARIES} GTest::gmock GTest::gtest)
  target_compile_definitions(${name} PRIVATE
    ORBILENS_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    ORBILENS_BINARY_DIR="${PROJECT_BINARY_DIR}")
  orbilens_warnings(${name})

  if("unit" IN_LIST ARG_LABELS AND NOT ARG_LABELS MATCHES "gl|qml|media|slow")
    add_dependencies(screenless ${name})
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    LABELS "${ARG_LABELS}" TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "QSG_RENDER_LOOP=basic")
  if("qml" IN_LIST ARG_LABELS)
    # Keys go to the window that has the focus, which another program's window would take.
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
  endif()
  if("gl" IN_LIST ARG_LABELS OR "media" IN_LIST ARG_LABELS)
    # Each of these draws with every processor there is; side by side they starve one another.
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
    add_test(NAME ${name}_threaded COMMAND ${name})
    set_tests_properties(${name}_threaded PROPERTIES
      LABELS "${ARG_LABELS};threaded" TIMEOUT ${ARG_TIMEOUT} RUN_SERIAL ON
      ENVIRONMENT "QSG_RENDER_LOOP=threaded")
  endif()
endfunction()

# orbilens_fuzz(<name> SOURCES <files...> LIBRARIES <libraries...>)
# A libFuzzer target; its seeds and the inputs of past crashes lie in fuzz/corpus/<name>.
function(orbilens_fuzz name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  orbilens_warnings(${name})
  add_dependencies(screenless ${name})
  set_property(GLOBAL APPEND PROPERTY ORBILENS_FUZZ_TARGETS ${name})
endfunction()
