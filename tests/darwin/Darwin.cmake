# The Mac's adapters, run over fakes of the C interfaces that they call. include/ declares those; it
# is on no path on a Mac, where the real headers are.

# An object library: the adapters refer weakly to some functions, for which nothing would be taken
# from an archive.
file(GLOB darwin_fakes CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/darwin/fakes/*.cpp")
list(FILTER darwin_fakes EXCLUDE REGEX "execute_with_privileges")
add_library(darwin_fakes OBJECT ${darwin_fakes}
            "${PROJECT_SOURCE_DIR}/src/adapters/common/macos/signing_requirement.cpp")
target_link_libraries(darwin_fakes PUBLIC pallimo_test_options pallimo_src_adapters_macos)
add_library(darwin_execution MODULE darwin/fakes/execute_with_privileges.cpp)
target_link_libraries(darwin_execution PRIVATE pallimo_options)
target_include_directories(darwin_execution SYSTEM
                           PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/darwin/include")

file(GLOB darwin_tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/darwin/*_test.cpp")
add_library(darwin_c_api_tests OBJECT ${darwin_tests})
target_link_libraries(darwin_c_api_tests PUBLIC darwin_fakes GTest::gtest_main pallimo_src_sensors
                                                pallimo_src_modules pallimo_src_helper_link)
target_compile_definitions(darwin_c_api_tests
                           PRIVATE PALLIMO_EXECUTE_LIBRARY="$<TARGET_FILE:darwin_execution>")
target_precompile_headers(darwin_c_api_tests REUSE_FROM pallimo_test_headers)
add_executable(darwin_c_api)
set_target_properties(darwin_c_api PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
target_link_libraries(darwin_c_api PRIVATE darwin_c_api_tests $<TARGET_OBJECTS:darwin_fakes> ${CMAKE_DL_LIBS})
add_dependencies(darwin_c_api darwin_execution)
pallimo_tests_of(darwin_c_api)

add_executable(darwin_scenarios darwin/scenarios/recordings_test.cpp $<TARGET_OBJECTS:darwin_fakes>)
set_target_properties(darwin_scenarios PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                                  "${PROJECT_BINARY_DIR}/tests")
target_link_libraries(darwin_scenarios PRIVATE pallimo_test_options GTest::gtest_main
                                               pallimo_src_adapters_macos pallimo_src_app)
target_precompile_headers(darwin_scenarios REUSE_FROM pallimo_test_headers)
pallimo_tests_of(darwin_scenarios)

# Mistakes on purpose: a copy of an adapter with one text replaced by another, under the same tests.
# They must fail, and say this. The copy's object stands before the library's, which is then not
# taken. Not under sanitizers, which would only find the same later.
# Each source alone: fakes and adapters are taken one by one.
set_target_properties(pallimo_src_adapters_macos darwin_fakes darwin_c_api_tests darwin_c_api
                      darwin_scenarios PROPERTIES UNITY_BUILD OFF)

function(darwin_mistake name file from to complaint)
  set(source "${PROJECT_SOURCE_DIR}/src/adapters/macos/${file}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
  file(READ "${source}" text)
  string(REPLACE "${from}" "${to}" mistaken "${text}")
  if(mistaken STREQUAL text)
    message(FATAL_ERROR "mistake ${name}: ${file} has no \"${from}\"")
  endif()
  set(copy "${CMAKE_CURRENT_BINARY_DIR}/mistakes/${name}/${file}")
  file(CONFIGURE OUTPUT "${copy}" CONTENT "${mistaken}" @ONLY)
  add_executable(darwin_mistake_${name} "${copy}" $<TARGET_OBJECTS:darwin_fakes>)
  set_target_properties(darwin_mistake_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                                          "${PROJECT_BINARY_DIR}/tests/mistakes")
  target_link_libraries(darwin_mistake_${name} PRIVATE darwin_c_api_tests ${CMAKE_DL_LIBS})
  add_test(NAME darwin_mistake_${name} COMMAND darwin_mistake_${name})
  set_tests_properties(darwin_mistake_${name} PROPERTIES PASS_REGULAR_EXPRESSION "${complaint}"
                                                         TIMEOUT 120)
endfunction()

if(NOT PALLIMO_SANITIZER)
  darwin_mistake(leaked_reference kernel_figures.cpp "const CFRef owned(dictionary)"
                 "struct { CFTypeRef kept; CFTypeRef get() const { return kept; } } const owned{dictionary}"
                 "mac.held.*vendor-id")
  darwin_mistake(leaked_memory kernel_figures.cpp "vm_deallocate(" "[](auto...) {}("
                 "8 mapped words")
  darwin_mistake(over_release iokit_hid_sensors.cpp "    return value"
                 "    CFRelease(serviceAt(service));\n    return value"
                 "the end of an array of an object that is gone: HID service")
  darwin_mistake(released_twice kernel_figures.cpp "IOServiceMatching(className)"
                 "CFRef(IOServiceMatching(className)).get()"
                 "of an object that is gone: dictionary")
  darwin_mistake(released_service kernel_figures.cpp "io_connect_t connection"
                 "IOObjectRelease(service);\n    io_connect_t connection"
                 "IOServiceOpen of a name that is no service AppleSMC")
  darwin_mistake(selector kernel_figures.cpp "connection, selector," "connection, selector - 1,"
                 "IOConnectCallStructMethod of another selector than 2")
  darwin_mistake(input_size kernel_figures.cpp "&input, kSmcRecordSize" "&input, 79"
                 "IOConnectCallStructMethod with an input that has not 80 bytes")
  darwin_mistake(output_size kernel_figures.cpp "outputSize = kSmcRecordSize" "outputSize = 0"
                 "IOConnectCallStructMethod without room for 80 bytes")
  darwin_mistake(authorization_flags app_services.cpp "kAuthorizationFlagDefaults, &reference"
                 "kAuthorizationFlagInteractionAllowed, &reference"
                 "AuthorizationCreate with rights, an environment or flags")

  # The fakes' own definitions hold the declarations that the adapters write themselves.
  set(mistaken "${CMAKE_CURRENT_BINARY_DIR}/mistakes/prototype/adapters/macos/hid_event_system.h")
  file(READ "${PROJECT_SOURCE_DIR}/src/adapters/macos/hid_event_system.h" text)
  string(REGEX REPLACE "IOHIDEventRef matching,[ \n]*IOOptionBits options"
         "std::int32_t options, std::int64_t timestamp" text "${text}")
  file(CONFIGURE OUTPUT "${mistaken}" CONTENT "${text}" @ONLY)
  separate_arguments(darwin_flags UNIX_COMMAND "${CMAKE_CXX_FLAGS}")
  add_test(NAME darwin_mistake_prototype
           COMMAND ${CMAKE_CXX_COMPILER} ${darwin_flags} -std=c++20 -fsyntax-only
                   -I "${CMAKE_CURRENT_BINARY_DIR}/mistakes/prototype" -I "${PROJECT_SOURCE_DIR}/src"
                   -I "${CMAKE_CURRENT_SOURCE_DIR}" -isystem "${CMAKE_CURRENT_SOURCE_DIR}/darwin/include"
                   "${CMAKE_CURRENT_SOURCE_DIR}/darwin/fakes/hid_event_system.cpp")
  set_tests_properties(darwin_mistake_prototype PROPERTIES PASS_REGULAR_EXPRESSION
    "conflicting declaration of C function.*IOHIDServiceClientCopyEvent|conflicting types for 'IOHIDServiceClientCopyEvent'")
endif()

# What the Mac's helper does with processes and files, over fakes of the calls that are a Mac's own;
# the tests of child processes run a second time over them.
add_executable(darwin_helper
  darwin/helper/client_waits_test.cpp darwin/helper/fake_process_calls.cpp
  darwin/helper/launchd_job_test.cpp darwin/helper/process_calls_test.cpp unit/adapters/common/posix_child_processes_test.cpp
  "${PROJECT_SOURCE_DIR}/helper/macos/launchd_job.cpp"
  # In place of the one in the library.
  "${PROJECT_SOURCE_DIR}/src/adapters/common/macos/process_calls.cpp")
# Each source alone: one of them stands in for calls that another one's headers declare.
set_target_properties(darwin_helper PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests"
                                               UNITY_BUILD OFF)
target_include_directories(darwin_helper SYSTEM
                           PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/darwin/include")
target_link_libraries(darwin_helper PRIVATE pallimo_test_options GTest::gtest_main
                                            pallimo_src_adapters_common ${CMAKE_DL_LIBS})
target_precompile_headers(darwin_helper REUSE_FROM pallimo_test_headers)
pallimo_tests_of(darwin_helper PREFIX Mac. PROPERTIES TIMEOUT 300)

# The Mac's part of the app, which joins these adapters with Qt: compiled with both and never linked,
# so that what changes around it does not break it unseen.
if(TARGET pallimo_src_adapters_qt)
  file(GLOB darwin_app CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/app/macos/*.cpp"
                                         "${PROJECT_SOURCE_DIR}/src/app/macos/no_sparkle/*.cpp")
  add_library(darwin_app OBJECT ${darwin_app})
  target_include_directories(darwin_app PRIVATE "${PALLIMO_PACKAGING}/include")
  target_link_libraries(darwin_app PRIVATE pallimo_test_options pallimo_src_app
                                           pallimo_src_adapters_macos pallimo_src_adapters_qt
                                           pallimo_src_adapters_prometheus pallimo_src_ui_widgets)
endif()
