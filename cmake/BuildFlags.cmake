# Flags of every target, set once: link `linfit_flags` (PRIVATE) to each of them.
add_library(linfit_flags INTERFACE)
target_compile_features(linfit_flags INTERFACE cxx_std_20)

# The include roots. Solver and host meet only at the binary interface, so that no target of the product links
# both of the first two.
foreach(root solver host tests)
  add_library(${root}_root INTERFACE)
endforeach()
target_include_directories(solver_root INTERFACE ${PROJECT_SOURCE_DIR}/solver)
target_include_directories(host_root INTERFACE ${PROJECT_SOURCE_DIR}/host)
target_include_directories(tests_root INTERFACE ${PROJECT_SOURCE_DIR})
# The single-precision results are defined to the last bit: no fused multiply-add, no fast math, and
# nothing that turns on flush-to-zero.
target_compile_options(linfit_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off)
# g++ 12 sees overlapping copies in "text" + std::string() that are not there (GCC bug 105651).
target_compile_options(linfit_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# PIE for programs, too.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Hardening as distributions use it. The sanitizers check more, and their calls and the fortified ones don't mix.
if(NOT LINFIT_SANITIZE AND NOT LINFIT_FUZZ)
  # A Debug build isn't optimized, and _FORTIFY_SOURCE warns of that.
  target_compile_options(linfit_flags INTERFACE -fstack-protector-strong
                                                $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
  if(WIN32)
    # The functions that the stack protector and the fortified calls end in are in a library of their own there.
    target_link_options(linfit_flags INTERFACE -fstack-protector-strong
                                               -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    target_compile_options(linfit_flags INTERFACE -fstack-clash-protection -fcf-protection)
    target_link_options(linfit_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
endif()

find_program(LINFIT_CCACHE ccache)
if(LINFIT_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${LINFIT_CCACHE})
endif()

if(LINFIT_FUZZ)
  target_compile_options(linfit_flags INTERFACE -fsanitize=fuzzer-no-link)
  set(LINFIT_SANITIZE ON)
endif()
if(LINFIT_SANITIZE)
  target_compile_options(linfit_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                -fno-omit-frame-pointer)
  target_link_options(linfit_flags INTERFACE -fsanitize=address,undefined)
  if(NOT WIN32)
    # dlopen is called from the sanitizer's run time, so that a RUNPATH of the program does not count; an
    # RPATH does.
    target_link_options(linfit_flags INTERFACE -Wl,--disable-new-dtags)
  endif()
endif()

# A program that finds the run-time libraries in its own directory.
function(linfit_search_own_directory target)
  if(NOT WIN32)
    # BUILD_RPATH would get a second, empty element, by which the loader searches the current directory.
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
  endif()
endfunction()

# On Windows, a program's narrow texts (arguments, file names) are UTF-8, by its manifest.
function(linfit_windows_manifest target)
  if(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/packaging/windows/manifest.rc)
  endif()
endfunction()

# What Windows shows as details of a program or library.
function(linfit_windows_version target description licence)
  if(WIN32)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
      set(file_type VFT_APP)
      set(suffix .exe)
    else()
      set(file_type VFT_DLL)
      set(suffix .dll)
    endif()
    set(resource ${PROJECT_BINARY_DIR}/resources/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/version.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
  endif()
endfunction()
