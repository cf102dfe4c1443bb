# The posix-thread flavour of MinGW-w64: std::mutex and thread_local work without helper libraries of our own.
set(CMAKE_C_COMPILER ${KAVO_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KAVO_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${KAVO_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${KAVO_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Tests and tools of the build run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run.sh)
