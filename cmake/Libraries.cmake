# Where the libraries of others come from. What `make build` makes holds them, and needs nothing at run time but the C
# library: it starts faster, and runs on machines that lack them. Packages of a distribution use the system's.
option(LINFIT_STATIC_LIBRARIES
       "Link LAPACK, GLPK, SQLite and the compilers' run-time libraries into programs and libraries" ON)
# A tree that was configured the other way has the other files in its cache.
if(NOT LINFIT_LIBRARIES_FOUND_STATIC STREQUAL LINFIT_STATIC_LIBRARIES)
  foreach(found SQLite3_LIBRARY GLPK_LIBRARY ZLIB_LIBRARY_RELEASE)
    unset(${found} CACHE)
  endforeach()
  set(LINFIT_LIBRARIES_FOUND_STATIC ${LINFIT_STATIC_LIBRARIES} CACHE INTERNAL "")
endif()

if(WIN32)
  # The toolchain file links everything statically; the preset names the LAPACK.
  find_package(LAPACK REQUIRED)
elseif(LINFIT_STATIC_LIBRARIES)
  set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
  # A position-independent program with OpenBLAS inside has 12,000 relative relocations; packed, they are 1 kB in
  # place of 290, and a start is a third of a millisecond shorter.
  target_link_options(linfit_flags INTERFACE -static-libgcc -static-libstdc++ -Wl,-z,pack-relative-relocs)
  # The OpenBLAS without threads of its own, whatever the system's choice is.
  find_library(LINFIT_OPENBLAS openblas PATH_SUFFIXES openblas-serial REQUIRED)
  foreach(name gfortran quadmath)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${name}.a
                    OUTPUT_VARIABLE lib${name} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  add_library(LAPACK::LAPACK INTERFACE IMPORTED)
  target_link_libraries(LAPACK::LAPACK INTERFACE ${LINFIT_OPENBLAS} ${libgfortran} ${libquadmath} m)
else()
  # The generic names lead to whichever LAPACK the system has chosen, and not to one with threads of its own that
  # happens to be installed.
  set(BLA_VENDOR Generic)
  find_package(LAPACK REQUIRED)
endif()
