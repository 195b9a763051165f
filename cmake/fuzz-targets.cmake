# The libFuzzer targets (fuzz/*_fuzz.cpp), each linked like the unit tests: the portable
# core, the virtual station and the test seams, all under ASan and UBSan. The controller
# target puts the replaying port (fuzz/replay_serial_port.cpp) where the others have the
# virtual board. `make fuzz` builds them in build/fuzz and runs them (scripts/fuzz).

# Loops over every byte of a frame or a render compare only their own counters; tracing
# those comparisons would cost more than the whole conversion and tell the fuzzer nothing.
set_source_files_properties(camera/camera.cpp camera/bayer_conversion.cpp camera/camera_setup.cpp
  pattern/mask_import.cpp pattern/pattern_stores.cpp sim/virtual_camera_seam.cpp
  sim/recorded_display_seam.cpp
  PROPERTIES COMPILE_OPTIONS -fno-sanitize-coverage=trace-cmp)

get_target_property(TELVANE_SEAMS telvane_test_seams SOURCES)
list(FILTER TELVANE_SEAMS EXCLUDE REGEX "virtual_serial_seam\\.cpp$")
add_library(telvane_fuzz_seams OBJECT ${TELVANE_SEAMS} fuzz/fuzz_support.cpp)

set(TELVANE_FUZZ_TARGETS)
file(GLOB TELVANE_FUZZ_SOURCES CONFIGURE_DEPENDS fuzz/*_fuzz.cpp)
foreach(source ${TELVANE_FUZZ_SOURCES})
  get_filename_component(name ${source} NAME_WE)
  string(REGEX REPLACE "_fuzz$" "" name ${name})
  if(name STREQUAL "controller_replies")
    set(port fuzz/replay_serial_port.cpp)
  else()
    set(port sim/virtual_serial_seam.cpp)
  endif()
  add_executable(fuzz_${name} ${source} ${port}
    $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
    $<TARGET_OBJECTS:telvane_fuzz_seams>)
  list(APPEND TELVANE_FUZZ_TARGETS fuzz_${name})
endforeach()
add_custom_target(telvane_fuzz DEPENDS ${TELVANE_FUZZ_TARGETS})
