# The three programs. Each main is short; the work is in the folder's library. The one place that
# picks adapters by operating system.

include_guard(GLOBAL)

if(NOT APPLE)
  # Never installed: it stands where the operating system's own tool stands on a Mac.
  add_executable(powermetrics tools/powermetrics/main.cpp)
  target_link_libraries(powermetrics PRIVATE pallimo_tools_powermetrics)

  file(GLOB helper_platform CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/helper/linux/*.cpp")
  add_executable(com.ostrovane.powermetrics helper/main.cpp ${helper_platform})
  target_link_libraries(com.ostrovane.powermetrics PRIVATE pallimo_helper)
  # A fixed absolute path, as on a Mac; whoever can change the build can change the helper.
  target_compile_definitions(
    com.ostrovane.powermetrics PRIVATE PALLIMO_VERSION="${PROJECT_VERSION}"
                                       PALLIMO_POWERMETRICS="$<TARGET_FILE:powermetrics>")
  add_dependencies(com.ostrovane.powermetrics powermetrics)
endif()

if(PALLIMO_QT)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core)
  pallimo_folder(src/adapters/qt LINKS Qt6::Core)
  if(NOT APPLE)
    file(GLOB app_platform CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/app/linux/*.cpp")
    add_executable(pallimo src/app/main.cpp ${app_platform})
    target_link_libraries(pallimo PRIVATE pallimo_src_app pallimo_src_adapters_qt)
    target_compile_definitions(pallimo PRIVATE PALLIMO_VERSION="${PROJECT_VERSION}")
    add_dependencies(pallimo com.ostrovane.powermetrics powermetrics)
  endif()
endif()
