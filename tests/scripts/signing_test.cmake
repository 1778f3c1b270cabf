# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# cmake -DROOT=... -DWORK=... -P signing_test.cmake   what cmake/Signing.cmake makes of its variable.

cmake_minimum_required(VERSION 3.25)
set(failures 0)

# expect(WHAT ACTUAL EXPECTED)
macro(expect what actual expected)
  if(NOT "${actual}" STREQUAL "${expected}")
    message("FAILED: ${what}\n  expected: ${expected}\n  actual:   ${actual}")
    math(EXPR failures "${failures} + 1")
  endif()
endmacro()

if(DEFINED PALLIMO_SIGNING)
  # The second process: reads the variable and says what came of it.
  set(PROJECT_SOURCE_DIR "${ROOT}")
  set(PROJECT_BINARY_DIR "${WORK}")
  set(PROJECT_VERSION 9.8.7)
  include("${ROOT}/cmake/Signing.cmake")
  file(WRITE "${WORK}/app" "${PALLIMO_APP_REQUIREMENT}")
  file(WRITE "${WORK}/helper" "${PALLIMO_HELPER_REQUIREMENT}")
  return()
endif()

# sign(SIGNING): OK or the error; the requirements in app and helper.
function(sign signing)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" "-DROOT=${ROOT}" "-DWORK=${WORK}" "-DPALLIMO_SIGNING=${signing}" ${ARGN} -P
            "${CMAKE_CURRENT_LIST_FILE}"
    RESULT_VARIABLE status ERROR_VARIABLE said)
  set(status "${status}" PARENT_SCOPE)
  set(said "${said}" PARENT_SCOPE)
  foreach(name app helper)
    file(READ "${WORK}/${name}" text)
    set(${name} "${text}" PARENT_SCOPE)
  endforeach()
endfunction()

file(MAKE_DIRECTORY "${WORK}")
sign(";com.a;com.b;1.2")
expect("without a team" "${app}"
       "identifier \"com.a\" and info [CFBundleShortVersionString] >= \"1.2\"")

sign("TEAM123456;com.a;com.b;1.2")
set(developer_id " and certificate 1[field.1.2.840.113635.100.6.2.6] exists and certificate leaf[field.1.2.840.113635.100.6.1.13] exists and certificate leaf[subject.OU] = \"TEAM123456\"")
expect("the app, of a team" "${app}"
       "anchor apple generic and identifier \"com.a\" and info [CFBundleShortVersionString] >= \"1.2\"${developer_id}")
expect("the helper, of a team" "${helper}"
       "anchor apple generic and identifier \"com.b\" and info [CFBundleShortVersionString] >= \"1.2\"${developer_id}")
file(READ "${WORK}/packaging/macos/AppInfo.plist" list)
string(FIND "${list}" "&gt;= \"1.2\"${developer_id}" at)
if(at LESS 0)
  expect("the app's list has the helper's requirement" "${list}" "")
endif()
string(FIND "${list}" "SUPublicEDKey" at)
expect("without a key there is no entry for it" "${at}" "-1")

sign("TEAM123456;com.a;com.b;1.2" "-DPALLIMO_UPDATE_KEY=abc=")
file(READ "${WORK}/packaging/macos/AppInfo.plist" list)
string(FIND "${list}" "\t<key>SUPublicEDKey</key>\n\t<string>abc=</string>\n</dict>" at)
if(at LESS 0)
  expect("a key has its entry" "${list}" "")
endif()

foreach(bad "TEAM;com.a;com.b" "TEAM\";com.a;com.b;1.2" ";com.A;com.b;1.2" ";com.a or true;com.b;1.2")
  sign("${bad}")
  if(status EQUAL 0 OR NOT said MATCHES "PALLIMO_SIGNING")
    expect("\"${bad}\" is refused" "${status} ${said}" "an error")
  endif()
endforeach()

if(failures GREATER 0)
  message(FATAL_ERROR "${failures} expectations failed")
endif()
