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
sign(";com.a;com.ostrovane.powermetrics;1.2")
expect("without a team" "${app}"
       "identifier \"com.a\" and info [CFBundleShortVersionString] >= \"1.2\"")

sign("TEAM123456;com.a;com.ostrovane.powermetrics;1.2")
set(developer_id " and certificate 1[field.1.2.840.113635.100.6.2.6] exists and certificate leaf[field.1.2.840.113635.100.6.1.13] exists and certificate leaf[subject.OU] = \"TEAM123456\"")
expect("the app, of a team" "${app}"
       "anchor apple generic and identifier \"com.a\" and info [CFBundleShortVersionString] >= \"1.2\"${developer_id}")
expect("the helper, of a team" "${helper}"
       "anchor apple generic and identifier \"com.ostrovane.powermetrics\" and info [CFBundleShortVersionString] >= \"1.2\"${developer_id}")
file(READ "${WORK}/packaging/macos/AppInfo.plist" list)
string(FIND "${list}" "&gt;= \"1.2\"${developer_id}" at)
if(at LESS 0)
  expect("the app's list has the helper's requirement" "${list}" "")
endif()
string(FIND "${list}" "SUPublicEDKey" at)
expect("without a key there is no entry for it" "${at}" "-1")

sign("TEAM123456;com.a;com.ostrovane.powermetrics;1.2" "-DPALLIMO_UPDATE_KEY=abc=")
file(READ "${WORK}/packaging/macos/AppInfo.plist" list)
string(FIND "${list}" "\t<key>SUPublicEDKey</key>\n\t<string>abc=</string>\n</dict>" at)
if(at LESS 0)
  expect("a key has its entry" "${list}" "")
endif()

# A piece too few; characters that lead a requirement astray; capitals in the app's name; a team that
# is none; an empty name; another helper than the one of the sources; versions that are none, and one
# that this version itself would not meet.
set(helper_name "com.ostrovane.powermetrics")
foreach(bad "TEAM123456;com.a;${helper_name}" "TEAM12345\";com.a;${helper_name};1.2" ";com.A;${helper_name};1.2"
            ";com.a or true;${helper_name};1.2" "TEAM;com.a;${helper_name};1.2" "team123456;com.a;${helper_name};1.2"
            "TEAM1234567;com.a;${helper_name};1.2" ";;${helper_name};1.2" ";com.a;;1.2" ";com.a;com.b;1.2"
            ";com.a;${helper_name};" ";com.a;${helper_name};x" ";com.a;${helper_name};1." ";com.a;${helper_name};9.8.8"
            ";com.a;${helper_name};99.0")
  sign("${bad}")
  if(status EQUAL 0 OR NOT said MATCHES "PALLIMO_SIGNING")
    expect("\"${bad}\" is refused" "${status} ${said}" "an error")
  endif()
endforeach()
sign(";com.a;${helper_name};9.8.7")
expect("this version may be the oldest" "${status}" "0")

# An updater that could never update is refused.
set(signing ";com.a;${helper_name};1.2")
set(feed "-DPALLIMO_UPDATE_FEED=https://a.example/appcast.xml")
foreach(bad "${feed}" "-DPALLIMO_UPDATE_KEY=abc="
            "-DPALLIMO_UPDATE_KEY=abc=;-DPALLIMO_UPDATE_FEED=http://a.example/appcast.xml")
  sign("${signing}" "-DPALLIMO_SPARKLE=/Sparkle.framework" ${bad})
  if(status EQUAL 0 OR NOT said MATCHES "PALLIMO_SPARKLE")
    expect("an updater with ${bad} alone is refused" "${status} ${said}" "an error")
  endif()
endforeach()
sign("${signing}" "-DPALLIMO_SPARKLE=/Sparkle.framework" "-DPALLIMO_UPDATE_KEY=abc=" "${feed}")
expect("an updater with key and feed" "${status}" "0")

if(failures GREATER 0)
  message(FATAL_ERROR "${failures} expectations failed")
endif()
