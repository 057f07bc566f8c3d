# clipwright_floor(<target> FLOOR <n> SOURCES <file>... [LINKS <lib>...] [PRIVATE_LINKS <lib>...])
#
# A static library that stands on a floor of the house. It may link only to libraries on lower
# floors; a link to its own floor or upwards stops the configuration.
define_property(TARGET PROPERTY CLIPWRIGHT_FLOOR
  BRIEF_DOCS "Floor of the house that the target stands on")

function(clipwright_floor target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FLOOR" "SOURCES;LINKS;PRIVATE_LINKS")
  add_library(${target} STATIC ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES CLIPWRIGHT_FLOOR ${arg_FLOOR})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${target}
    PUBLIC ${arg_LINKS}
    PRIVATE ${arg_PRIVATE_LINKS} clipwright_flags)

  foreach(link IN LISTS arg_LINKS arg_PRIVATE_LINKS)
    if(TARGET ${link})
      get_target_property(floor ${link} CLIPWRIGHT_FLOOR)
      if(NOT floor STREQUAL "floor-NOTFOUND" AND floor GREATER_EQUAL arg_FLOOR)
        message(FATAL_ERROR
          "${target} (floor ${arg_FLOOR}) must not link to ${link} (floor ${floor})")
      endif()
    endif()
  endforeach()
endfunction()
