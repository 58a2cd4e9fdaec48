# The pictures in dialogs/pictures/made are those that dialogs/make_pictures.sh makes from today's drawings. Pixels differ
# from one version of its tools to the next, so what they were made from is compared. Run as
#   cmake [-D ROOT=folder] -P cmake/check_pictures.cmake
# Fails with a single message that lists all that is out of date.
cmake_minimum_required(VERSION 3.25)

if(NOT ROOT)
  get_filename_component(ROOT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
endif()
set(pictures "${ROOT}/dialogs/pictures")
set(faults "")

file(STRINGS "${pictures}/made/SHA256SUMS" lines)
set(known "")
foreach(line IN LISTS lines)
  string(REGEX MATCH "^([0-9a-f]+)  (.+)$" whole "${line}")
  list(APPEND known "${CMAKE_MATCH_2}")
  if(NOT EXISTS "${pictures}/${CMAKE_MATCH_2}")
    string(APPEND faults "\n  ${CMAKE_MATCH_2} is no longer there")
    continue()
  endif()
  file(SHA256 "${pictures}/${CMAKE_MATCH_2}" sum)
  if(NOT sum STREQUAL CMAKE_MATCH_1)
    string(APPEND faults "\n  ${CMAKE_MATCH_2} has changed")
  endif()
endforeach()

file(GLOB drawings RELATIVE "${pictures}" "${pictures}/*.svg")
foreach(drawing IN LISTS drawings)
  if(NOT drawing IN_LIST known)
    string(APPEND faults "\n  ${drawing} is new")
  endif()
endforeach()

if(faults)
  message(FATAL_ERROR "The pictures are out of date; dialogs/make_pictures.sh makes them anew:${faults}")
endif()
message("The pictures are those of today's drawings.")
