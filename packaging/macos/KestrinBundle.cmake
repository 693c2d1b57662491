include("${CMAKE_CURRENT_LIST_DIR}/../IconDrawing.cmake")

# kestrin_macos_icon(file)
#
# Has the icon made at build time, by a program of ours: of the tools of macOS none is sure to read the drawing.
function(kestrin_macos_icon file)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)
    set(drawing "${CMAKE_CURRENT_BINARY_DIR}/KestrinIcon.svg")
    kestrin_icon_drawing("${drawing}")
    add_executable(kestrin_icon "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/MakeIcon.cpp")
    target_link_libraries(kestrin_icon PRIVATE kestrin_common Qt6::Gui Qt6::Svg)
    add_custom_command(OUTPUT "${file}"
        COMMAND kestrin_icon "${drawing}" "${file}"
        DEPENDS kestrin_icon "${drawing}"
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
