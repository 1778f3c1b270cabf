# The three programs. Each main is short; the work is in the folder's library. The one place that
# picks adapters by operating system.

include_guard(GLOBAL)

# Where the app's bundle holds the helper. The bundle is the folder that the app lies in.
set(PALLIMO_HELPER_FOLDER "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Contents/Library/LaunchServices")

# pallimo_helper_program(TARGET VERSION FOLDER [TOOL])   a helper of that version, put into that
# folder, which runs the stand-in or the program at the path TOOL
function(pallimo_helper_program target version folder)
  set(tool "$<TARGET_FILE:powermetrics>")
  if(ARGC GREATER 3)
    set(tool "${ARGV3}")
  endif()
  file(GLOB platform CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/helper/linux/*.cpp")
  add_executable(${target} "${PROJECT_SOURCE_DIR}/helper/main.cpp" ${platform})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME com.ostrovane.powermetrics
                                             RUNTIME_OUTPUT_DIRECTORY "${folder}")
  target_link_libraries(${target} PRIVATE pallimo_helper)
  # A fixed absolute path, as on a Mac; whoever can change the build can change the helper.
  target_compile_definitions(
    ${target} PRIVATE PALLIMO_VERSION="${version}"
                      PALLIMO_POWERMETRICS="${tool}")
  add_dependencies(${target} powermetrics)
endfunction()

# pallimo_app_program(TARGET URL FOLDER)   an app that tells the server of that address of its
# launches, put into that folder, which is its bundle
function(pallimo_app_program target url folder)
  add_executable(${target} "${PROJECT_SOURCE_DIR}/src/app/main.cpp")
  set_target_properties(${target} PROPERTIES OUTPUT_NAME pallimo RUNTIME_OUTPUT_DIRECTORY
                                                                 "${folder}")
  target_link_libraries(${target} PRIVATE pallimo_app_parts)
  target_compile_definitions(${target} PRIVATE PALLIMO_VERSION="${PROJECT_VERSION}"
                                               PALLIMO_ANALYTICS_URL="${url}")
  configure_file("${PALLIMO_PACKAGING}/AppInfo.plist" "${folder}/Contents/Info.plist" COPYONLY)
endfunction()

if(APPLE)
  include(MacPrograms)
else()
  # Never installed: it stands where the operating system's own tool stands on a Mac.
  add_executable(powermetrics tools/powermetrics/main.cpp)
  target_link_libraries(powermetrics PRIVATE pallimo_tools_powermetrics)

  pallimo_helper_program(com.ostrovane.powermetrics "${PROJECT_VERSION}" "${PALLIMO_HELPER_FOLDER}")
  # A Mac's helper carries its info dictionary within itself.
  configure_file("${PALLIMO_PACKAGING}/HelperInfo.plist"
                 "${PALLIMO_HELPER_FOLDER}/com.ostrovane.powermetrics.plist" COPYONLY)
endif()

if(PALLIMO_QT)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network)
  pallimo_folder(src/adapters/qt LINKS Qt6::Core Qt6::Gui Qt6::Network)
  pallimo_folder(src/ui/widgets/basics LINKS Qt6::Widgets)
  foreach(room windows panels settings main)
    pallimo_folder(src/ui/widgets/${room})
  endforeach()
  pallimo_rooms(src/ui/widgets basics windows panels settings main)
  qt_add_resources(icon_sources "${PROJECT_SOURCE_DIR}/packaging/icon/icon.qrc")
  target_sources(pallimo_src_ui_widgets_windows PRIVATE ${icon_sources})
  # As Qt, it is built against the system's own standard library.
  find_package(prometheus-cpp REQUIRED CONFIG)
  pallimo_folder(src/adapters/prometheus LINKS prometheus-cpp::pull)
  if(NOT APPLE)
    # All of the app but its main, which the tests have one of their own for.
    file(GLOB parts CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/app/linux/*.cpp"
                                      "${PROJECT_SOURCE_DIR}/src/app/window/*.cpp")
    add_library(pallimo_app_parts STATIC ${parts})
    target_link_libraries(pallimo_app_parts PUBLIC pallimo_src_app pallimo_src_adapters_qt
                                                   pallimo_src_adapters_prometheus
                                                   pallimo_src_ui_widgets)
    pallimo_app_program(pallimo "${PALLIMO_ANALYTICS_URL}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    add_dependencies(pallimo com.ostrovane.powermetrics powermetrics)
  else()
    pallimo_app_bundle()
  endif()
endif()
