# kestrin_macos_bundle(target)
#
# Makes an application bundle of the target and installs it. Signing it, and putting Qt into it with macdeployqt, is
# left to whoever distributes it. It must not be sandboxed: a sandboxed application may not ask others to quit.
function(kestrin_macos_bundle target)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME Kestrin
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in"
        MACOSX_BUNDLE_GUI_IDENTIFIER "${KESTRIN_BUNDLE_IDENTIFIER}"
        MACOSX_BUNDLE_BUNDLE_NAME Kestrin
        MACOSX_BUNDLE_SHORT_VERSION_STRING "${PROJECT_VERSION}"
        MACOSX_BUNDLE_BUNDLE_VERSION "${PROJECT_VERSION}")
    set(icon "${PROJECT_SOURCE_DIR}/packaging/macos/Kestrin.icns")
    if(EXISTS "${icon}")
        target_sources(${target} PRIVATE "${icon}")
        set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
        set_target_properties(${target} PROPERTIES MACOSX_BUNDLE_ICON_FILE Kestrin.icns)
    endif()
    install(TARGETS ${target} BUNDLE DESTINATION .)
endfunction()
