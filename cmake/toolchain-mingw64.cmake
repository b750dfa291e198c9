# Windows x86-64 from Debian's or Ubuntu's mingw-w64 compilers. The posix variant: std::mutex needs it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Third-party libraries: packaging/windows-libraries builds them. Without "..", which CMake takes out of some paths when
# it runs again, so that all would be built again.
get_filename_component(LINFIT_WINDOWS_LIBRARIES ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${LINFIT_WINDOWS_LIBRARIES} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Everything in one file: a program needs Windows' own libraries alone.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../packaging/wine-run)
