# Windows programs: telvane.exe (real devices), telvane-sim.exe (the virtual station),
# the Windows tests run under Wine, and the window inspector that `make run` and the end-to-end tests use.

function(telvane_publish target)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${TELVANE_BIN_DIR}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:${target}> ${TELVANE_BIN_DIR}/)
endfunction()

if(NOT MSVC)
  # Static, so the .exe needs no DLL beyond Windows' own; -municode for wWinMain.
  add_link_options(-static)
endif()
# wWinMain is the entry of the two GUI programs; tests and tools keep main.
function(telvane_gui_entry target)
  if(NOT MSVC)
    target_link_options(${target} PRIVATE -municode)
  endif()
endfunction()

add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)

file(GLOB TELVANE_SHELL CONFIGURE_DEPENDS station/*_win32.cpp app/*_win32.cpp link/*_win32.cpp camera/*_win32.cpp
  pattern/*_win32.cpp)
foreach(seam ${TELVANE_SEAM_FILES})
  list(REMOVE_ITEM TELVANE_SHELL ${CMAKE_CURRENT_SOURCE_DIR}/${seam})
endforeach()
add_library(telvane_shell OBJECT ${TELVANE_SHELL})
add_library(telvane_win32_seams OBJECT app/feedback_win32.cpp station/clock_win32.cpp
  app/dialog_controls_win32.cpp)

set(TELVANE_WIN32_LIBS gdiplus gdi32 user32 comctl32 comdlg32 ole32 oleaut32 uuid shell32)

if(TELVANE_PYLON)
  find_package(pylon REQUIRED)
  set(TELVANE_CAMERA_SEAM camera/camera_sdk_pylon_win32.cpp)
else()
  set(TELVANE_CAMERA_SEAM camera/camera_sdk_absent.cpp)
endif()

add_executable(telvane WIN32 app/main_win32.cpp resources/telvane.rc
  $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_shell>
  $<TARGET_OBJECTS:telvane_win32_seams>
  link/serial_port_win32.cpp ${TELVANE_CAMERA_SEAM} app/first_job_absent.cpp
  jobs/exposure_record_absent.cpp)
target_link_libraries(telvane PRIVATE ${TELVANE_WIN32_LIBS})
telvane_gui_entry(telvane)
if(TELVANE_PYLON)
  target_link_libraries(telvane PRIVATE pylon::pylon)
endif()
telvane_publish(telvane)

add_executable(telvane-sim WIN32 app/main_win32.cpp resources/telvane.rc
  $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_shell>
  $<TARGET_OBJECTS:telvane_win32_seams> $<TARGET_OBJECTS:telvane_sim_model>
  sim/virtual_serial_seam.cpp sim/virtual_camera_seam.cpp sim/first_job_seam.cpp
  sim/exposure_record_seam.cpp sim/station_clock_seam.cpp)
target_link_libraries(telvane-sim PRIVATE ${TELVANE_WIN32_LIBS})
telvane_gui_entry(telvane-sim)
telvane_publish(telvane-sim)

# The writing-time forecast, a console program the main window runs beside itself.
add_executable(telvane-forecast sim/forecast_main.cpp sim/forecast.cpp
  $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_sim_model>
  $<TARGET_OBJECTS:telvane_test_seams>)
telvane_publish(telvane-forecast)

if(TELVANE_TESTS)
  enable_testing()
  set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # GoogleTest's own sources are not held to our warning flags.
  foreach(t gtest gtest_main gmock gmock_main)
    if(TARGET ${t})
      target_compile_options(${t} PRIVATE -w)
    endif()
  endforeach()

  file(GLOB TELVANE_WIN_TESTS CONFIGURE_DEPENDS tests/win/*.cpp)
  if(TELVANE_WIN_TESTS)
    add_executable(telvane_win_tests ${TELVANE_WIN_TESTS} resources/telvane.rc
      $<TARGET_OBJECTS:telvane_core> $<TARGET_OBJECTS:telvane_shell>
      $<TARGET_OBJECTS:telvane_win32_seams>
      link/serial_port_win32.cpp camera/camera_sdk_absent.cpp jobs/exposure_record_absent.cpp)
    target_link_libraries(telvane_win_tests PRIVATE gtest gtest_main ${TELVANE_WIN32_LIBS})
    add_test(NAME win_tests COMMAND telvane_win_tests --gtest_brief=1)
    set_tests_properties(win_tests PROPERTIES ENVIRONMENT "TELVANE_BIN=${TELVANE_BIN_DIR}")
  endif()

  file(GLOB TELVANE_INSPECT CONFIGURE_DEPENDS scripts/inspect_win32.cpp)
  if(TELVANE_INSPECT)
    add_executable(telvane-inspect ${TELVANE_INSPECT})
    target_link_libraries(telvane-inspect PRIVATE user32 gdi32)
    telvane_publish(telvane-inspect)
  endif()

  file(GLOB TELVANE_E2E_TESTS CONFIGURE_DEPENDS tests/e2e/test_*.py)
  foreach(script ${TELVANE_E2E_TESTS})
    get_filename_component(name ${script} NAME_WE)
    add_test(NAME e2e_${name} COMMAND python3 ${script})
    set_tests_properties(e2e_${name} PROPERTIES ENVIRONMENT "TELVANE_BIN=${TELVANE_BIN_DIR}"
      TIMEOUT 300 RUN_SERIAL TRUE)
  endforeach()
endif()
