# What is installed where, and the packages: .deb for Linux, .zip for Windows.
#
# The programs, the libraries that they load at run time and the option definitions stay together in one
# directory. On Linux that is lib/linfit (in the Debian package below the multiarch directory), with links to the
# programs in bin; on Windows the package's top.
if(WIN32)
  set(program_directory .)
  set(document_directory .)
else()
  include(GNUInstallDirs)
  set(program_directory ${CMAKE_INSTALL_LIBDIR}/linfit)
  set(document_directory ${CMAKE_INSTALL_DATADIR}/doc/linfit)
endif()
set(programs linfit tavolite)

# A package holds what the target `programs` makes: neither tests nor bench are built for it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

install(TARGETS ${programs} RUNTIME DESTINATION ${program_directory})
install(TARGETS kervdclib64 tptdclib64 tdxdclib64 LIBRARY DESTINATION ${program_directory}
                                            RUNTIME DESTINATION ${program_directory})
install(FILES ${PROJECT_SOURCE_DIR}/host/tptdclib/optlinfit.def DESTINATION ${program_directory})
# Documents keep their places to each other, for their links.
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${document_directory})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION ${document_directory})
install(FILES ${PROJECT_SOURCE_DIR}/bench/RESULTS.md DESTINATION ${document_directory}/bench)
# Of what the report page draws with.
install(FILES ${PROJECT_SOURCE_DIR}/third_party/d3/LICENSE DESTINATION ${document_directory}/licences RENAME D3.txt)
install(FILES ${PROJECT_SOURCE_DIR}/third_party/plot/LICENSE DESTINATION ${document_directory}/licences
        RENAME Observable-Plot.txt)

set(CPACK_PACKAGE_NAME linfit)
set(CPACK_PACKAGE_VENDOR "linfit developers")
set(CPACK_PACKAGE_CONTACT "linfit developers <developers@linfit.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "least-squares regression solver with a command for models and tables")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# A file of the package from a file of the tree, compressed without name and time.
function(linfit_install_compressed source name destination)
  set(result ${PROJECT_BINARY_DIR}/compressed/${name}.gz)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/compressed)
  execute_process(COMMAND gzip -9cn INPUT_FILE ${source} OUTPUT_FILE ${result} COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
  install(FILES ${result} DESTINATION ${destination})
endfunction()

if(WIN32)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION .)
  install(DIRECTORY ${LINFIT_WINDOWS_LIBRARIES}/licences DESTINATION .)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/windows/README.txt DESTINATION .)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME linfit-${PROJECT_VERSION}-windows-x86-64)
else()
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
  foreach(program ${programs})
    file(CREATE_LINK ../${program_directory}/${program} ${PROJECT_BINARY_DIR}/links/${program} SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/links/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/man/${program}.1.in ${page}.in @ONLY)
    add_custom_command(OUTPUT ${page}.gz
      COMMAND ${PROJECT_SOURCE_DIR}/packaging/man/add-options $<TARGET_FILE:tavolite> ${page}.in > ${page}
      COMMAND gzip -9nf ${page}
      DEPENDS tavolite ${page}.in ${PROJECT_SOURCE_DIR}/packaging/man/add-options
      VERBATIM)
    list(APPEND pages ${page}.gz)
  endforeach()
  add_custom_target(man DEPENDS ${pages})
  add_dependencies(programs man)
  install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright DESTINATION ${document_directory})
  linfit_install_compressed(${PROJECT_SOURCE_DIR}/packaging/debian/changelog changelog ${document_directory})
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION math)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # Any LAPACK will do; this one is fast, and has no threads of its own.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS libopenblas0-serial)
  set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://linfit.invalid/")
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
      "linfit fits linear least-squares regression models and writes a report
with the estimates, their standard errors, t statistics and tail
probabilities. It is started by the modelling system TAVO; with the command
tavolite, it works without TAVO as well.
.
The program tavolite is linked with GLPK, and so it is under the GNU GPL,
version 3 or later.")
endif()
include(CPack)
