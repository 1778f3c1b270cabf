# Who may talk to whom over the helper link, and what the bundle is made of. One variable decides;
# everything that names it is written from here: the header that both programs compile, the property
# lists of app and helper, and the job of launchd.

include_guard(GLOBAL)

# The team's identifier at Apple (empty: signed for this machine alone), the app's bundle
# identifier, the helper's, and the oldest version of either that the other still talks to. That
# version is raised when an older one turns out to be a danger, and only then: a helper that the app
# refuses can't even be asked for its version.
set(PALLIMO_SIGNING ";com.ostrovane.pallimo;com.ostrovane.powermetrics;0.1.0" CACHE STRING
    "TEAM;APP IDENTIFIER;HELPER IDENTIFIER;OLDEST VERSION")
list(LENGTH PALLIMO_SIGNING PALLIMO_SIGNING_PIECES)
if(NOT PALLIMO_SIGNING_PIECES EQUAL 4)
  message(FATAL_ERROR "PALLIMO_SIGNING has four pieces: team (may be empty), app, helper, version")
endif()
list(GET PALLIMO_SIGNING 0 PALLIMO_TEAM)
list(GET PALLIMO_SIGNING 1 PALLIMO_APP_IDENTIFIER)
list(GET PALLIMO_SIGNING 2 PALLIMO_HELPER_IDENTIFIER)
list(GET PALLIMO_SIGNING 3 PALLIMO_OLDEST_VERSION)
# What a requirement could be led astray with.
foreach(piece IN LISTS PALLIMO_SIGNING)
  if(NOT piece MATCHES "^[A-Za-z0-9.-]*$")
    message(FATAL_ERROR "PALLIMO_SIGNING: \"${piece}\" has other characters than letters, digits, dots, hyphens")
  endif()
endforeach()
if(NOT PALLIMO_TEAM MATCHES "^([A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9])?$")
  message(FATAL_ERROR "PALLIMO_SIGNING: a team is ten capital letters and digits, or empty, not \"${PALLIMO_TEAM}\"")
endif()
if(NOT PALLIMO_APP_IDENTIFIER MATCHES "^[a-z0-9.-]+$")
  # Settings are stored under it, and Qt lower-cases it where the system does not.
  message(FATAL_ERROR "PALLIMO_SIGNING: the app's identifier is in lower case")
endif()
if(NOT PALLIMO_HELPER_IDENTIFIER STREQUAL "com.ostrovane.powermetrics")
  # The name that app and helper meet under, and the paths that root writes to and removes: fixed in
  # the sources and in packaging/macos/common.sh, where nothing from outside reaches them.
  message(FATAL_ERROR "PALLIMO_SIGNING: the helper's identifier is com.ostrovane.powermetrics")
endif()
# Compared number by number on a Mac; an empty one would be met by every version.
if(NOT PALLIMO_OLDEST_VERSION MATCHES "^[0-9]+(\\.[0-9]+)*$" OR PALLIMO_OLDEST_VERSION VERSION_GREATER PROJECT_VERSION)
  message(FATAL_ERROR "PALLIMO_SIGNING: \"${PALLIMO_OLDEST_VERSION}\" is no version up to ${PROJECT_VERSION}")
endif()

# pallimo_requirement(IDENTIFIER OUT)   the requirement that a program of that identifier meets
function(pallimo_requirement identifier out)
  set(text "identifier \"${identifier}\" and info [CFBundleShortVersionString] >= \"${PALLIMO_OLDEST_VERSION}\"")
  if(PALLIMO_TEAM)
    string(JOIN " and " text "anchor apple generic" "${text}"
           "certificate 1[field.1.2.840.113635.100.6.2.6] exists"
           "certificate leaf[field.1.2.840.113635.100.6.1.13] exists"
           "certificate leaf[subject.OU] = \"${PALLIMO_TEAM}\"")
  endif()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

pallimo_requirement(${PALLIMO_APP_IDENTIFIER} PALLIMO_APP_REQUIREMENT)
pallimo_requirement(${PALLIMO_HELPER_IDENTIFIER} PALLIMO_HELPER_REQUIREMENT)
string(REPLACE ">" "&gt;" PALLIMO_APP_REQUIREMENT_XML "${PALLIMO_APP_REQUIREMENT}")
string(REPLACE ">" "&gt;" PALLIMO_HELPER_REQUIREMENT_XML "${PALLIMO_HELPER_REQUIREMENT}")

set(PALLIMO_UPDATE_FEED "https://updates.pallimo.invalid/appcast.xml" CACHE STRING
    "Address of the list of releases that the app's updater reads")
set(PALLIMO_UPDATE_KEY "" CACHE STRING
    "Public EdDSA key (base64) that releases are signed with; empty: the app has no updater")
if(PALLIMO_SPARKLE AND NOT PALLIMO_UPDATE_KEY)
  message(FATAL_ERROR "PALLIMO_SPARKLE without PALLIMO_UPDATE_KEY: the updater would refuse every release")
endif()
if(PALLIMO_SPARKLE AND (NOT PALLIMO_UPDATE_FEED MATCHES "^https://[^/]+/"
                        OR PALLIMO_UPDATE_FEED MATCHES "[.]invalid/"))
  message(FATAL_ERROR "PALLIMO_SPARKLE without a PALLIMO_UPDATE_FEED: \"${PALLIMO_UPDATE_FEED}\" leads nowhere")
endif()
set(PALLIMO_UPDATE_KEY_ENTRY "")
if(PALLIMO_UPDATE_KEY)
  set(PALLIMO_UPDATE_KEY_ENTRY
      "\t<key>SUPublicEDKey</key>\n\t<string>${PALLIMO_UPDATE_KEY}</string>\n")
endif()

# Written for every system: the tests read them wherever they run.
set(PALLIMO_PACKAGING "${PROJECT_BINARY_DIR}/packaging/macos")
configure_file("${PROJECT_SOURCE_DIR}/packaging/macos/signing_requirements.h.in"
               "${PALLIMO_PACKAGING}/include/signing_requirements.h" @ONLY)
foreach(list AppInfo.plist HelperInfo.plist HelperJob.plist)
  configure_file("${PROJECT_SOURCE_DIR}/packaging/macos/${list}.in" "${PALLIMO_PACKAGING}/${list}"
                 @ONLY)
endforeach()
