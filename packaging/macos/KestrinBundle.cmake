include("${CMAKE_CURRENT_LIST_DIR}/../IconDrawing.cmake")

# kestrin_macos_icon(file)
#
# Has the icon made at build time. Icons of macOS leave a margin of 100 in 1024 pixels around their tile.
function(kestrin_macos_icon file)
    find_program(png2icns png2icns REQUIRED)
    set(drawing "${CMAKE_CURRENT_BINARY_DIR}/KestrinIcon.svg")
    kestrin_icon_drawing("${drawing}" MARGIN 62)
    kestrin_icon_pictures(pictures "${drawing}" 16 32 128 256 512 1024)
    add_custom_command(OUTPUT "${file}"
        COMMAND "${png2icns}" "${file}" ${pictures}
        DEPENDS ${pictures}
        VERBATIM)
endfunction()

# kestrin_macos_bundle(target)
#
# Makes an application bundle of the target and installs it. Signing it, and putting Qt into it with macdeployqt, is
# left to whoever distributes it. It must not be sandboxed: a sandboxed application may not ask others to quit.
function(kestrin_macos_bundle target)
    set(icon "${CMAKE_CURRENT_BINARY_DIR}/Kestrin.icns")
    kestrin_macos_icon("${icon}")
    target_sources(${target} PRIVATE "${icon}")
    set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME Kestrin
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in"
        MACOSX_BUNDLE_GUI_IDENTIFIER "${KESTRIN_BUNDLE_IDENTIFIER}"
        MACOSX_BUNDLE_BUNDLE_NAME Kestrin
        MACOSX_BUNDLE_ICON_FILE Kestrin.icns
        MACOSX_BUNDLE_SHORT_VERSION_STRING "${PROJECT_VERSION}"
        MACOSX_BUNDLE_BUNDLE_VERSION "${PROJECT_VERSION}")
    install(TARGETS ${target} BUNDLE DESTINATION .)
endfunction()
