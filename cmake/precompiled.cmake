# kavo_precompiled_headers(<owner> HEADERS <header>... [LIBRARIES <library>...] [OPTIONS <option>...])
# Makes a target that compiles the headers once.
#
# kavo_precompiled(<target> <owner>)
# Makes all files of the target begin with the headers of the owner. Both need the same options.
function(kavo_precompiled_headers owner)
  cmake_parse_arguments(OWNER "" "" "HEADERS;LIBRARIES;OPTIONS" ${ARGN})
  set(empty ${CMAKE_BINARY_DIR}/${owner}.cpp)  # a library needs a source
  file(CONFIGURE OUTPUT ${empty} CONTENT "" @ONLY)
  add_library(${owner} STATIC ${empty})
  target_link_libraries(${owner} PRIVATE kavo_options ${OWNER_LIBRARIES})
  target_compile_options(${owner} PRIVATE ${OWNER_OPTIONS} ${KAVO_PRECOMPILED_OPTION})
  target_precompile_headers(${owner} PRIVATE ${OWNER_HEADERS})
endfunction()

function(kavo_precompiled target owner)
  target_compile_options(${target} PRIVATE ${KAVO_PRECOMPILED_OPTION})
  target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()

# -fpch-preprocess lets ccache see through a precompiled header. g++ 12 warns falsely about the bounds of strings whose
# functions come from one (GCC bug 105329); a release is compiled without and sees what is true.
set(KAVO_PRECOMPILED_OPTION $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds> $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread>)
