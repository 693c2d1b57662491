# How the window presents itself to a desktop: its entry, what software centres tell of it, and its icons.

configure_file(linux/Kestrin.desktop.in "${KESTRIN_DESKTOP_ID}.desktop" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")

execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/release-notes" appstream
    OUTPUT_VARIABLE KESTRIN_RELEASES OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(linux/Kestrin.metainfo.xml.in "${KESTRIN_DESKTOP_ID}.metainfo.xml" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

# The mark fills its square; an icon has the round corners that the window gives it. They are drawn, not clipped,
# because Qt's reader of SVG knows no clipping.
set(hicolor "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
set(mark "${PROJECT_SOURCE_DIR}/design/KestrinIconMark.svg")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${mark}")
file(READ "${mark}" drawing)
string(REPLACE "<rect width=\"512\" height=\"512\" " "<rect width=\"512\" height=\"512\" rx=\"112.64\" " icon
    "${drawing}")
if(icon STREQUAL drawing)
    message(FATAL_ERROR "KestrinIconMark.svg has no background whose corners could be made round.")
endif()
file(CONFIGURE OUTPUT "${KESTRIN_DESKTOP_ID}.svg" CONTENT "${icon}" @ONLY)
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
