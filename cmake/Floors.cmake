# The product stands in floors: a target may link to, and include from, lower floors only.
#
# clipwright_floor(<target> FLOOR <n> [OBJECT] SOURCES <file>...
#                  [LINKS <lib>...] [PRIVATE_LINKS <lib>...])
#
# A library of the product, static unless it is an object library or BUILD_SHARED_LIBS is on. When
# the whole tree has been read, a link to the same floor or a higher one stops the configuration,
# whatever the order of the folders and wherever the link was added. What the targets declare is
# also written to floors.json, for the test of the #include lines.
define_property(TARGET PROPERTY CLIPWRIGHT_FLOOR BRIEF_DOCS "The target's floor in the product")
set_property(GLOBAL PROPERTY CLIPWRIGHT_FLOOR_TARGETS "")

function(clipwright_floor target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OBJECT" "FLOOR" "SOURCES;LINKS;PRIVATE_LINKS")
  if(arg_OBJECT)
    add_library(${target} OBJECT ${arg_SOURCES})
  else()
    add_library(${target} ${arg_SOURCES})
  endif()
  set_target_properties(${target} PROPERTIES CLIPWRIGHT_FLOOR ${arg_FLOOR})
  set_property(GLOBAL APPEND PROPERTY CLIPWRIGHT_FLOOR_TARGETS ${target})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target}
    PUBLIC ${arg_LINKS}
    PRIVATE ${arg_PRIVATE_LINKS} clipwright_flags)
endfunction()

function(clipwright_check_floors)
  get_property(targets GLOBAL PROPERTY CLIPWRIGHT_FLOOR_TARGETS)
  set(entries "")
  foreach(target IN LISTS targets)
    get_target_property(floor ${target} CLIPWRIGHT_FLOOR)
    get_target_property(links ${target} LINK_LIBRARIES)
    get_target_property(folder ${target} SOURCE_DIR)
    set(floors_linked "")
    foreach(link IN LISTS links)
      if(NOT link IN_LIST targets)
        continue()
      endif()
      get_target_property(link_floor ${link} CLIPWRIGHT_FLOOR)
      if(link_floor GREATER_EQUAL floor)
        message(FATAL_ERROR
          "${target} (floor ${floor}) must not link to ${link} (floor ${link_floor})")
      endif()
      list(APPEND floors_linked "\"${link}\"")
    endforeach()
    list(JOIN floors_linked ", " floors_linked)
    list(APPEND entries
      "  \"${target}\": {\"floor\": ${floor}, \"folder\": \"${folder}\", \"links\": [${floors_linked}]}")
  endforeach()
  list(JOIN entries ",\n" entries)
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/floors.json CONTENT "{\n${entries}\n}\n")
endfunction()

cmake_language(DEFER DIRECTORY ${PROJECT_SOURCE_DIR} CALL clipwright_check_floors)
