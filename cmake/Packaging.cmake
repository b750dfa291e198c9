# What is installed where, and the packages: .deb for Linux, .zip for Windows.
#
# The programs, the libraries that they load at run time and the option definitions stay together in one
# directory. On Linux that is lib/linfit, with links to the programs in bin; on Windows the package's top.
if(WIN32)
  set(program_directory .)
  set(example_directory examples)
else()
  include(GNUInstallDirs)
  set(program_directory lib/linfit)
  set(example_directory ${CMAKE_INSTALL_DATADIR}/doc/linfit/examples)
endif()
set(programs linfit tavolite)

install(TARGETS ${programs} RUNTIME DESTINATION ${program_directory})
install(TARGETS kervdclib64 tptdclib64 tdxdclib64 LIBRARY DESTINATION ${program_directory}
                                            RUNTIME DESTINATION ${program_directory})
install(FILES ${PROJECT_SOURCE_DIR}/host/tptdclib/optlinfit.def DESTINATION ${program_directory})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${example_directory})

set(CPACK_PACKAGE_NAME linfit)
set(CPACK_PACKAGE_VENDOR "linfit")
set(CPACK_PACKAGE_CONTACT "linfit developers <linfit@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(WIN32)
  install(DIRECTORY ${LINFIT_WINDOWS_LIBRARIES}/licences DESTINATION .)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/windows/README.txt DESTINATION .)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME linfit-${PROJECT_VERSION}-windows-x86-64)
else()
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
  foreach(program ${programs})
    file(CREATE_LINK ../lib/linfit/${program} ${PROJECT_BINARY_DIR}/links/${program} SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/links/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
    configure_file(${PROJECT_SOURCE_DIR}/packaging/man/${program}.1.in ${PROJECT_BINARY_DIR}/man/${program}.1 @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endforeach()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION math)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
      "linfit fits linear least-squares regression models and writes a report with the
estimates, their standard errors, t statistics and tail probabilities. It is started
by the modelling system TAVO; with the command tavolite, it works without TAVO as well.")
endif()
include(CPack)
