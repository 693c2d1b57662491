# The Debian package, made by CPack (./package).

set(doc "${CMAKE_INSTALL_DATADIR}/doc/kestrin")

file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)" line "${license}")
set(KESTRIN_COPYRIGHT "${CMAKE_MATCH_1}")
string(REGEX REPLACE "^.*(Permission is hereby.*)\n$" "\\1" KESTRIN_LICENSE "${license}")
string(REPLACE "\n\n" "\n.\n" KESTRIN_LICENSE "${KESTRIN_LICENSE}")
string(REPLACE "\n" "\n " KESTRIN_LICENSE " ${KESTRIN_LICENSE}")
set(KESTRIN_FOREIGN_COPYRIGHT "")
if(TARGET kestrin)
    file(READ debian/drawings-copyright KESTRIN_FOREIGN_COPYRIGHT)
    # The faces in the program are given away under the licence of the font that they are made of.
    set(font_copyright /usr/share/doc/fonts-inter/copyright)
    if(EXISTS "${font_copyright}")
        file(READ "${font_copyright}" font)
        string(REGEX MATCH "\nCopyright: ([^<\n]*[^ <\n])" line "${font}")
        set(KESTRIN_FONT_COPYRIGHT "${CMAKE_MATCH_1}")
        string(REGEX MATCH "\nLicense: OFL-1.1\n( [^\n]*\n)+" KESTRIN_FONT_LICENSE "${font}")
        file(READ debian/font-copyright.in font)
        string(CONFIGURE "${font}" font @ONLY)
        string(APPEND KESTRIN_FOREIGN_COPYRIGHT "${font}")
    else()
        message(WARNING "${font_copyright} is missing: the package must not be given away without the font's licence.")
    endif()
endif()
configure_file(debian/copyright.in copyright @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/copyright" DESTINATION "${doc}")

execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/release-notes" debian "${KESTRIN_MAINTAINER}"
    OUTPUT_VARIABLE debian_changelog COMMAND_ERROR_IS_FATAL ANY)
file(CONFIGURE OUTPUT changelog.Debian CONTENT "${debian_changelog}" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/CHANGELOG.md" changelog COPYONLY)
foreach(name IN ITEMS changelog.Debian changelog)
    add_custom_command(OUTPUT ${name}.gz
        COMMAND gzip -9nc ${name} > ${name}.gz
        DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/${name}"
        VERBATIM)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.gz" DESTINATION "${doc}")
endforeach()
add_custom_target(kestrin_changelogs ALL DEPENDS changelog.Debian.gz changelog.gz)

execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/release-notes" version
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT version MATCHES "^${PROJECT_VERSION}[~-]")
    message(FATAL_ERROR "CHANGELOG.md begins with ${version}, but the project is ${PROJECT_VERSION}.")
endif()
string(REGEX MATCH "^(.*)-([^-]*)$" line "${version}")
set(CPACK_DEBIAN_PACKAGE_VERSION "${CMAKE_MATCH_1}")
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_2}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrin)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${KESTRIN_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/debian/strip-programs.cmake")
set(CPACK_STRIP "${CMAKE_STRIP}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_THREADS 1)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${KESTRIN_SITE_URL}")
file(READ debian/Description CPACK_DEBIAN_PACKAGE_DESCRIPTION)
string(STRIP "${CPACK_DEBIAN_PACKAGE_DESCRIPTION}" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
# The libraries are found by dpkg-shlibdeps. What is only read when the window opens is named here: the QML modules
# that its views import, with what these import, and the desktop's pointers. Recommended is the font that has the letters
# which the program's own part of it lacks.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(run_time_packages
    qml6-module-qtqml
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-window
    qml6-module-qt-labs-platform
    libxcursor1)
if(TARGET kestrin)
    list(JOIN run_time_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, fonts-inter")
endif()

# CPack reads this first: the dates in the package are those of the source, whoever calls it and when.
file(CONFIGURE OUTPUT CPackSurroundings.cmake CONTENT "set(ENV{SOURCE_DATE_EPOCH} ${KESTRIN_SOURCE_EPOCH})\n" @ONLY)
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_BINARY_DIR}/CPackSurroundings.cmake")
include(CPack)
