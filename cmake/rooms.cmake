# One target per room; its line in src/<room>/CMakeLists.txt names everything it may include.

add_library(kavo_options INTERFACE)
target_include_directories(kavo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# -Wno-restrict: g++ 12 warns falsely about text + std::string (GCC bug 105329).
target_compile_options(kavo_options INTERFACE -Wall -Wextra -Wshadow -Werror $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(KAVO_SANITIZE)
  # On instrumented code g++ 12 warns falsely about uninitialized variants and strings.
  target_compile_options(kavo_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_compile_options(kavo_options INTERFACE -fsanitize=${KAVO_SANITIZE})
  if(KAVO_LEAVE_OUT)
    target_compile_options(kavo_options INTERFACE -fno-sanitize=${KAVO_LEAVE_OUT})
  endif()
  target_compile_options(kavo_options INTERFACE -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kavo_options INTERFACE -fsanitize=${KAVO_SANITIZE})
endif()
if(WIN32)
  target_compile_definitions(kavo_options INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN)
  # The compiler's run-time is linked in, so that nothing must be shipped beside the binaries.
  target_link_options(kavo_options INTERFACE -static)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(kavo_options INTERFACE -msse2 -mfpmath=sse)
  endif()
endif()

if(KAVO_PRECOMPILE)
  # What most files of the rooms include.
  kavo_precompiled_headers(kavo_room_headers HEADERS <algorithm> <array> <charconv> <functional> <map> <memory> <optional>
    <set> <span> <string> <string_view> <utility> <vector>)
  set_target_properties(kavo_room_headers PROPERTIES POSITION_INDEPENDENT_CODE ON)
endif()

# kavo_may_include(<name> <room>...): the include rule of a folder below src. A test reads it (tests/rooms).
function(kavo_may_include name)
  string(JOIN " " rooms ${name} ${ARGN})
  set_property(GLOBAL APPEND PROPERTY KAVO_INCLUDE_RULE "${rooms}")
endfunction()

# kavo_room(<name> [DEPENDS <room>...] [FOLDERS <folder>...] [LIBRARIES <library>...] [SOURCES <file>...])
# Makes a static library of all .cpp files in the folder and in the sub-folders named by FOLDERS. Other sub-folders hold
# adapters for one system; the caller adds those as SOURCES.
function(kavo_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS;FOLDERS;LIBRARIES;SOURCES" ${ARGN})
  set(patterns ${ROOM_FOLDERS})
  list(TRANSFORM patterns REPLACE "(.+)" "${CMAKE_CURRENT_SOURCE_DIR}/\\1/*.cpp")
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${patterns})
  list(APPEND sources ${ROOM_SOURCES})
  add_library(kavo_${name} STATIC ${sources})
  set_target_properties(kavo_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  kavo_may_include(${name} ${ROOM_DEPENDS})
  list(TRANSFORM ROOM_DEPENDS PREPEND kavo_)
  target_link_libraries(kavo_${name} PUBLIC kavo_options ${ROOM_DEPENDS} ${ROOM_LIBRARIES})
  if(KAVO_PRECOMPILE)
    kavo_precompiled(kavo_${name} kavo_room_headers)
  endif()
endfunction()
