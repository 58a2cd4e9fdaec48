# feature(CORE files SYSTEM files POSIX_SYSTEM files WINDOWS_SYSTEM files SETTINGS files GUI files)
#
# A feature folder lists its sources by the library they belong to:
#   CORE      records, stores, rules: standard C++ only
#   SYSTEM    the operating system's files: no Qt; POSIX_SYSTEM and WINDOWS_SYSTEM on those systems only
#   SETTINGS  the settings store and the clock: Qt Core
#   GUI       windows and the services that need Qt Widgets; DBUS where there is Qt DBus, on Linux
# cmake/check_includes.cmake parses these calls, so they must list the files literally, without variables.
function(feature)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "CORE;SYSTEM;POSIX_SYSTEM;WINDOWS_SYSTEM;SETTINGS;GUI;DBUS")
  target_sources(mact_core PRIVATE ${arg_CORE})
  target_sources(mact_system PRIVATE ${arg_SYSTEM})
  if(WIN32)
    target_sources(mact_system PRIVATE ${arg_WINDOWS_SYSTEM})
  else()
    target_sources(mact_system PRIVATE ${arg_POSIX_SYSTEM})
  endif()
  if(TARGET mact_settings)
    target_sources(mact_settings PRIVATE ${arg_SETTINGS})
  endif()
  if(TARGET mact_gui)
    target_sources(mact_gui PRIVATE ${arg_GUI})
    if(TARGET Qt6::DBus)
      target_sources(mact_gui PRIVATE ${arg_DBUS})
    endif()
  endif()
endfunction()
