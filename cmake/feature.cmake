# feature(CORE files SYSTEM files SETTINGS files WINDOWS files)
#
# A feature folder names its sources by the library they belong to:
#   CORE      records, stores, rules: standard C++ only
#   SYSTEM    the operating system's files: no Qt
#   SETTINGS  the settings store and the clock: Qt Core
#   WINDOWS   windows and the services that need Qt Widgets
function(feature)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "CORE;SYSTEM;SETTINGS;WINDOWS")
  target_sources(mact_core PRIVATE ${arg_CORE})
  target_sources(mact_system PRIVATE ${arg_SYSTEM})
  if(TARGET mact_settings)
    target_sources(mact_settings PRIVATE ${arg_SETTINGS})
  endif()
  if(TARGET mact_windows)
    target_sources(mact_windows PRIVATE ${arg_WINDOWS})
  endif()
endfunction()
