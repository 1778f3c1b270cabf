# Who may include whom. The one table: CMake refuses other links at configure, and
# tests/architecture reads this file and checks every #include against it.
#
#   pallimo_floor(FLOOR FOLDER)          the floor that a folder stands on
#   pallimo_arrow(FROM TO "reason")      FROM may include TO, which stands on a lower floor

include_guard(GLOBAL)

macro(pallimo_floor floor folder)
  set_property(GLOBAL PROPERTY "pallimo_floor_${folder}" "${floor}")
endmacro()

macro(pallimo_arrow from to reason)
  get_property(_from_floor GLOBAL PROPERTY "pallimo_floor_${from}")
  get_property(_to_floor GLOBAL PROPERTY "pallimo_floor_${to}")
  if("${_from_floor}" STREQUAL "" OR "${_to_floor}" STREQUAL "")
    message(FATAL_ERROR "Layers: ${from} -> ${to} names a folder without a floor")
  endif()
  if(NOT _to_floor LESS _from_floor)
    message(FATAL_ERROR "Layers: ${from} -> ${to} does not point down")
  endif()
  set_property(GLOBAL APPEND PROPERTY "pallimo_arrows_${from}" "${to}")
endmacro()

pallimo_floor(1 src/base)
pallimo_floor(2 src/helper_link/protocol)
pallimo_floor(3 src/ports)
pallimo_floor(4 src/sensors)
pallimo_floor(4 src/helper_link)
pallimo_floor(4 src/analytics)
pallimo_floor(4 src/updates)
pallimo_floor(4 src/adapters/libplist)
pallimo_floor(4 src/adapters/simulated)
pallimo_floor(4 src/adapters/linux)
pallimo_floor(4 src/adapters/qt)
pallimo_floor(5 src/sampling)
pallimo_floor(6 src/modules)
pallimo_floor(7 src/logging)
pallimo_floor(7 src/ui)
pallimo_floor(8 src/ui/widgets)
pallimo_floor(9 src/app)
pallimo_floor(8 helper)
pallimo_floor(8 tools/powermetrics)

pallimo_arrow(src/helper_link/protocol src/base "messages carry bytes")
pallimo_arrow(src/ports src/base "ports speak in the words of base")
pallimo_arrow(src/ports src/helper_link/protocol "a connection carries exactly these messages")

pallimo_arrow(src/sensors src/base "four-character codes, property lists")
pallimo_arrow(src/sensors src/ports "reads the SMC, HID sensors, registry, kernel variables")

pallimo_arrow(src/helper_link src/base "notices, executor, observable flags")
pallimo_arrow(src/helper_link src/ports "opens connections, asks the bundle, installs")
pallimo_arrow(src/helper_link src/helper_link/protocol "sends the messages")

pallimo_arrow(src/analytics src/base "identifiers, dates")
pallimo_arrow(src/analytics src/ports "reads what it tells, sends it")

pallimo_arrow(src/updates src/ports "starts the updater, says why it did not")

pallimo_arrow(src/adapters/libplist src/base "makes property-list values")
pallimo_arrow(src/adapters/libplist src/ports "implements the reader")
pallimo_arrow(src/adapters/simulated src/base "bytes and text formats")
pallimo_arrow(src/adapters/simulated src/ports "answers in a Mac's place")
pallimo_arrow(src/adapters/simulated src/helper_link/protocol "its sensors follow the results")
pallimo_arrow(src/adapters/linux src/base "bytes, executor")
pallimo_arrow(src/adapters/linux src/ports "implements connection, listener, children, log")
pallimo_arrow(src/adapters/linux src/helper_link/protocol "carries the messages")
pallimo_arrow(src/adapters/qt src/base "subscriptions")
pallimo_arrow(src/adapters/qt src/ports "implements queue, settings, clock, files, HTTP, screens")

pallimo_arrow(src/sampling src/base "property-list values, notices")
pallimo_arrow(src/sampling src/ports "timer, settings, reader")
pallimo_arrow(src/sampling src/helper_link "receives results, asks the manager's gate")

pallimo_arrow(src/modules src/base "observable, notices")
pallimo_arrow(src/modules src/ports "reads the processors' ticks")
pallimo_arrow(src/modules src/sensors "reads temperatures, GPU and the machine's identity")
pallimo_arrow(src/modules src/helper_link "the manager keeps a link to the utilisation module")
pallimo_arrow(src/modules src/sampling "reads the current sample")

pallimo_arrow(src/logging src/base "text formats")
pallimo_arrow(src/logging src/ports "asks clock and settings, writes the file, tells the user")
pallimo_arrow(src/logging src/sampling "takes its row as the engine's last step")
pallimo_arrow(src/logging src/modules "reads the current values")

pallimo_arrow(src/ui src/base "text formats, identifiers")
pallimo_arrow(src/ui src/ports "reads and writes the settings")
pallimo_arrow(src/ui src/modules "shows their figures")

pallimo_arrow(src/ui/widgets src/base "subscriptions")
pallimo_arrow(src/ui/widgets src/ports "settings that a click changes")
pallimo_arrow(src/ui/widgets src/ui "paints its values")

pallimo_arrow(src/app src/ui "builds the panels from the models")
pallimo_arrow(src/app src/ui/widgets "opens the window")
pallimo_arrow(src/app src/base "wires everything")
pallimo_arrow(src/app src/ports "wires everything")
pallimo_arrow(src/app src/helper_link/protocol "wires everything")
pallimo_arrow(src/app src/sensors "wires everything")
pallimo_arrow(src/app src/helper_link "wires everything")
pallimo_arrow(src/app src/sampling "wires everything")
pallimo_arrow(src/app src/modules "wires everything")
pallimo_arrow(src/app src/analytics "wires everything")
pallimo_arrow(src/app src/updates "wires everything")
pallimo_arrow(src/app src/logging "wires everything")
pallimo_arrow(src/app src/adapters/libplist "fills the platform")
pallimo_arrow(src/app src/adapters/simulated "fills the platform")
pallimo_arrow(src/app src/adapters/linux "fills the platform")
pallimo_arrow(src/app src/adapters/qt "fills the platform")

pallimo_arrow(helper src/base "bytes, words")
pallimo_arrow(helper src/ports "listener, children, timers")
pallimo_arrow(helper src/helper_link/protocol "answers the messages")
pallimo_arrow(helper src/adapters/linux "its main picks the adapters")
pallimo_arrow(helper src/adapters/simulated "off macOS it fails as its users plan")

pallimo_arrow(tools/powermetrics src/base "bytes")
pallimo_arrow(tools/powermetrics src/adapters/simulated "prints the simulated machine's document")
