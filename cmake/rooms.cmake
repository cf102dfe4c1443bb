# One target per room; its line in src/<room>/CMakeLists.txt names everything it may include.

add_library(kavo_options INTERFACE)
target_include_directories(kavo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# -Wno-restrict: g++ 12 warns falsely about text + std::string (GCC bug 105329).
target_compile_options(kavo_options INTERFACE -Wall -Wextra -Wshadow -Werror $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(KAVO_SANITIZE)
  # Instrumented code makes g++ 12 see uninitialized variants and strings where there are none.
  target_compile_options(kavo_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_compile_options(kavo_options INTERFACE -fsanitize=${KAVO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(kavo_options INTERFACE -fsanitize=${KAVO_SANITIZE})
endif()
if(WIN32)
  target_compile_definitions(kavo_options INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN)
  # Nothing may have to be shipped beside the binaries: the compiler's run-time is linked in.
  target_link_options(kavo_options INTERFACE -static)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(kavo_options INTERFACE -msse2 -mfpmath=sse)
  endif()
endif()

# kavo_room(<name> [DEPENDS <room>...] [LIBRARIES <library>...] [SOURCES <file>...])
# A static library of every .cpp of the folder itself; sub-folders hold adapters, which the caller adds as SOURCES.
function(kavo_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS;LIBRARIES;SOURCES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(APPEND sources ${ROOM_SOURCES})
  add_library(kavo_${name} STATIC ${sources})
  set_target_properties(kavo_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  list(TRANSFORM ROOM_DEPENDS PREPEND kavo_)
  target_link_libraries(kavo_${name} PUBLIC kavo_options ${ROOM_DEPENDS} ${ROOM_LIBRARIES})
endfunction()
