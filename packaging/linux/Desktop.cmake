# How the window presents itself to a desktop: its entry, what software centres tell of it, and its icons.

configure_file(linux/Kestrin.desktop.in "${KESTRIN_DESKTOP_ID}.desktop" @ONLY)
# KWin shows its windows to a program only if an entry names it by its path and says that it wants to see them.
configure_file(linux/kestrinctl.desktop.in "${KESTRIN_DESKTOP_ID}.ctl.desktop" @ONLY)
install(FILES
    "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.desktop"
    "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.ctl.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")

# Written anew by AppStream itself, it has the releases, and names its developer as the installed version wants it.
set(metainfo "${KESTRIN_DESKTOP_ID}.metainfo.xml")
configure_file(linux/Kestrin.metainfo.xml.in without-news.xml @ONLY)
add_custom_command(OUTPUT "${metainfo}"
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/linux/news" > news
    COMMAND "${appstreamcli}" news-to-metainfo --format=yaml news without-news.xml "${metainfo}"
    DEPENDS linux/news "${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${CMAKE_CURRENT_BINARY_DIR}/without-news.xml"
    VERBATIM)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${metainfo}" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

include(IconDrawing.cmake)
set(hicolor "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
set(drawing "${CMAKE_CURRENT_BINARY_DIR}/${KESTRIN_DESKTOP_ID}.svg")
kestrin_icon_drawing("${drawing}")
install(FILES "${drawing}" DESTINATION "${hicolor}/scalable/apps")
install(FILES linux/Kestrin-symbolic.svg RENAME "${KESTRIN_DESKTOP_ID}-symbolic.svg"
    DESTINATION "${hicolor}/symbolic/apps")
set(sizes 16 22 24 32 48 64 128 256 512)
kestrin_icon_pictures(pictures "${drawing}" ${sizes})
foreach(size picture IN ZIP_LISTS sizes pictures)
    install(FILES "${picture}" RENAME "${KESTRIN_DESKTOP_ID}.png" DESTINATION "${hicolor}/${size}x${size}/apps")
endforeach()

add_custom_target(kestrin_desktop_files ALL DEPENDS "${metainfo}" ${pictures})
