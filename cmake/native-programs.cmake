# Native programs: unit tests, benchmarks and the board served on a pseudo-terminal.

function(telvane_publish target)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${TELVANE_BIN_DIR}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:${target}> ${TELVANE_BIN_DIR}/)
endfunction()

file(GLOB TELVANE_BOARD_SIM_MAIN CONFIGURE_DEPENDS sim/board_sim_main.cpp)
if(TELVANE_BOARD_SIM_MAIN)
  # The board model and the picture files its exposure picture is written with.
  add_executable(telvane-board-sim ${TELVANE_BOARD_SIM_MAIN} $<TARGET_OBJECTS:telvane_sim_model>
    station/png_file.cpp)
  telvane_publish(telvane-board-sim)
endif()

# The writing-time forecast: the program on the virtual station and the virtual clock.
add_executable(telvane-forecast sim/forecast_main.cpp sim/forecast.cpp
  $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
  $<TARGET_OBJECTS:telvane_test_seams>)
telvane_publish(telvane-forecast)
# The layout import on the command line, for the tests that compare it with other programs.
add_executable(telvane-layout-raster sim/layout_raster_main.cpp pattern/layout_import.cpp
  pattern/layout_geometry.cpp pattern/gdsii_reader.cpp pattern/dxf_reader.cpp
  pattern/layout_raster.cpp)
telvane_publish(telvane-layout-raster)
# The soak run links what the unit tests link; built for make soak only, not for make test.
if(TELVANE_SOAK)
  add_executable(telvane-soak soak/soak_main.cpp
    $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
    $<TARGET_OBJECTS:telvane_test_seams>)
endif()

if(TELVANE_TESTS)
  enable_testing()
  find_package(GTest REQUIRED)
  file(GLOB TELVANE_UNIT_TESTS CONFIGURE_DEPENDS tests/unit/*.cpp)
  add_executable(telvane_unit_tests ${TELVANE_UNIT_TESTS} sim/forecast.cpp
    $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
    $<TARGET_OBJECTS:telvane_test_seams>)
  target_link_libraries(telvane_unit_tests PRIVATE GTest::gtest GTest::gtest_main GTest::gmock)
  add_test(NAME unit_tests COMMAND telvane_unit_tests --gtest_brief=1)
  # A wait whose virtual clock stops moving never ends: the time-out turns it into a failure.
  set_tests_properties(unit_tests PROPERTIES TIMEOUT 600 ENVIRONMENT
    "ASAN_OPTIONS=detect_leaks=1:abort_on_error=1;UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")

  file(GLOB TELVANE_NATIVE_SCRIPT_TESTS CONFIGURE_DEPENDS tests/native/test_*.py)
  foreach(script ${TELVANE_NATIVE_SCRIPT_TESTS})
    get_filename_component(name ${script} NAME_WE)
    add_test(NAME ${name} COMMAND python3 ${script})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "TELVANE_BIN=${TELVANE_BIN_DIR}")
  endforeach()
endif()

if(TELVANE_BENCH)
  find_package(benchmark REQUIRED)
  file(GLOB TELVANE_BENCHES CONFIGURE_DEPENDS bench/*.cpp)
  if(TELVANE_BENCHES)
    add_executable(telvane_bench ${TELVANE_BENCHES}
      $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
      $<TARGET_OBJECTS:telvane_test_seams>)
    target_link_libraries(telvane_bench PRIVATE benchmark::benchmark benchmark::benchmark_main)
  endif()
endif()
