# kavo_headers: the header-only libraries of the build machine. They are reached through links in the build folder,
# because /usr/include itself must not be on the path of a cross compiler.
add_library(kavo_headers INTERFACE)
foreach(entry nlohmann:nlohmann-json3-dev CLI:libcli11-dev)
  string(REPLACE ":" ";" entry ${entry})
  list(GET entry 0 folder)
  list(GET entry 1 package)
  if(NOT EXISTS /usr/include/${folder})
    message(FATAL_ERROR "The headers <${folder}/...> are missing: install the Debian package ${package}.")
  endif()
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
  file(CREATE_LINK /usr/include/${folder} ${CMAKE_BINARY_DIR}/headers/${folder} SYMBOLIC)
endforeach()
target_include_directories(kavo_headers SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
