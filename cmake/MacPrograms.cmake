# The two programs on a Mac: the helper, which carries its property lists within itself, and the
# app, a bundle that carries the helper.

include_guard(GLOBAL)

set(PALLIMO_BUNDLE "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/pallimo.app")
# Every build is signed, or the two ends of the link would refuse one another. "-" is good for this
# machine alone.
set(PALLIMO_SIGNING_IDENTITY "-" CACHE STRING "Identity that a build is signed with")

file(GLOB PALLIMO_HELPER_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/helper/macos/*.cpp"
     "${PROJECT_SOURCE_DIR}/helper/macos/*.mm")
add_executable(helper "${PROJECT_SOURCE_DIR}/helper/main.cpp" ${PALLIMO_HELPER_SOURCES})
set_target_properties(helper PROPERTIES
  OUTPUT_NAME "${PALLIMO_HELPER_IDENTIFIER}"
  RUNTIME_OUTPUT_DIRECTORY "${PALLIMO_BUNDLE}/Contents/Library/LaunchServices"
  LINK_DEPENDS "${PALLIMO_PACKAGING}/HelperInfo.plist;${PALLIMO_PACKAGING}/HelperJob.plist")
target_include_directories(helper PRIVATE "${PALLIMO_PACKAGING}/include")
target_compile_definitions(helper PRIVATE PALLIMO_VERSION="${PROJECT_VERSION}"
                                          PALLIMO_POWERMETRICS="/usr/bin/powermetrics")
target_link_libraries(helper PRIVATE pallimo_helper "-framework CoreFoundation"
                                     "-framework Foundation" "-framework Security")
target_link_options(
  helper PRIVATE
  "LINKER:-sectcreate,__TEXT,__info_plist,${PALLIMO_PACKAGING}/HelperInfo.plist"
  "LINKER:-sectcreate,__TEXT,__launchd_plist,${PALLIMO_PACKAGING}/HelperJob.plist")

# pallimo_app_bundle()   the app, with the helper in it, signed
function(pallimo_app_bundle)
  file(GLOB platform CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/app/macos/*.cpp"
                                       "${PROJECT_SOURCE_DIR}/src/app/window/*.cpp")
  if(PALLIMO_SPARKLE)
    list(APPEND platform "${PROJECT_SOURCE_DIR}/src/app/macos/sparkle/software_updater.cpp")
  else()
    list(APPEND platform "${PROJECT_SOURCE_DIR}/src/app/macos/no_sparkle/software_updater.cpp")
  endif()
  add_executable(pallimo MACOSX_BUNDLE "${PROJECT_SOURCE_DIR}/src/app/main.cpp" ${platform})
  set_target_properties(pallimo PROPERTIES
    MACOSX_BUNDLE_INFO_PLIST "${PALLIMO_PACKAGING}/AppInfo.plist"
    BUILD_RPATH "@executable_path/../Frameworks"
    # A new helper breaks the seal of the bundle, so the app is linked and signed again; as it is when
    # what goes into the bundle or its signature changes.
    LINK_DEPENDS "${PALLIMO_BUNDLE}/Contents/Library/LaunchServices/${PALLIMO_HELPER_IDENTIFIER};\
${PALLIMO_PACKAGING}/AppInfo.plist;${PROJECT_SOURCE_DIR}/packaging/macos/pallimo.entitlements;\
${PROJECT_SOURCE_DIR}/packaging/macos/sign")
  target_include_directories(pallimo PRIVATE "${PALLIMO_PACKAGING}/include")
  target_link_libraries(pallimo PRIVATE pallimo_src_app pallimo_src_adapters_qt
                                        pallimo_src_adapters_prometheus
                                        pallimo_src_ui_widgets)
  target_compile_definitions(pallimo PRIVATE PALLIMO_VERSION="${PROJECT_VERSION}"
                                             PALLIMO_ANALYTICS_URL="${PALLIMO_ANALYTICS_URL}")
  add_dependencies(pallimo helper)
  add_custom_command(
    TARGET pallimo POST_BUILD
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/macos/sign" "${PALLIMO_BUNDLE}"
            "${PALLIMO_SIGNING_IDENTITY}"
    VERBATIM)
endfunction()
