# How the window presents itself to a desktop: its entry, what software centres tell of it, and its icons.

configure_file(linux/Kestrin.desktop.in "${KESTRIN_DESKTOP_ID}.desktop" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")

execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/release-notes" appstream
    OUTPUT_VARIABLE KESTRIN_RELEASES OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(linux/Kestrin.metainfo.xml.in "${KESTRIN_DESKTOP_ID}.metainfo.xml" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

include(IconDrawing.cmake)
kestrin_icon_drawing("${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.svg")
set(hicolor "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.svg" DESTINATION "${hicolor}/scalable/apps")
install(FILES linux/Kestrin-symbolic.svg RENAME "${KESTRIN_DESKTOP_ID}-symbolic.svg"
    DESTINATION "${hicolor}/symbolic/apps")

find_program(RSVG_CONVERT rsvg-convert)
if(RSVG_CONVERT)
    set(pictures "")
    foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
        set(picture "${CMAKE_CURRENT_BINARY_DIR}/icon-${size}.png")
        add_custom_command(OUTPUT "${picture}"
            COMMAND "${RSVG_CONVERT}" -w ${size} -h ${size} -o "${picture}" "${KESTRIN_DESKTOP_ID}.svg"
            DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.svg"
            VERBATIM)
        install(FILES "${picture}" RENAME "${KESTRIN_DESKTOP_ID}.png"
            DESTINATION "${hicolor}/${size}x${size}/apps")
        list(APPEND pictures "${picture}")
    endforeach()
    add_custom_target(kestrin_icons ALL DEPENDS ${pictures})
else()
    message(STATUS "rsvg-convert is not there; only the scalable icon will be installed.")
endif()
