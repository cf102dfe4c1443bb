# kavo_expat: the XML parser, linked in statically. Native builds use the system's archive. Windows builds compile Debian's
# source package, which scripts/setup.sh unpacks in the user's cache.
add_library(kavo_expat INTERFACE)
if(NOT WIN32)
  find_library(KAVO_EXPAT_ARCHIVE libexpat.a REQUIRED)
  target_link_libraries(kavo_expat INTERFACE ${KAVO_EXPAT_ARCHIVE})
  return()
endif()

if(DEFINED ENV{XDG_CACHE_HOME})
  set(KAVO_CACHE $ENV{XDG_CACHE_HOME})
else()
  set(KAVO_CACHE $ENV{HOME}/.cache)
endif()
set(KAVO_EXPAT_SOURCE ${KAVO_CACHE}/kavo-sources/expat/expat CACHE PATH "Folder of Expat's source")
if(NOT EXISTS ${KAVO_EXPAT_SOURCE}/lib/xmlparse.c)
  message(FATAL_ERROR "Expat's source is not in ${KAVO_EXPAT_SOURCE}: run scripts/setup.sh.")
endif()
enable_language(C)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/expat/expat_config.h CONTENT
"#define BYTEORDER 1234
#define XML_CONTEXT_BYTES 1024
#define XML_DTD 1
#define XML_NS 1
")
add_library(kavo_expat_static STATIC
  ${KAVO_EXPAT_SOURCE}/lib/xmlparse.c ${KAVO_EXPAT_SOURCE}/lib/xmlrole.c ${KAVO_EXPAT_SOURCE}/lib/xmltok.c)
# 64-bit places: a 32-bit "long" ends at 2 GiB.
target_compile_definitions(kavo_expat_static PUBLIC XML_STATIC XML_LARGE_SIZE)
target_include_directories(kavo_expat_static PRIVATE ${CMAKE_BINARY_DIR}/expat)
target_include_directories(kavo_expat_static SYSTEM PUBLIC ${KAVO_EXPAT_SOURCE}/lib)
target_link_libraries(kavo_expat INTERFACE kavo_expat_static)
