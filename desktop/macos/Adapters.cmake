# The adapters to AppKit: for a build on a Mac, and for their tests elsewhere.

set(KESTRIN_MACOS_ADAPTERS
    macos/AppKitWorkspace.mm macos/AppKitWorkspace.h
    macos/NSStringText.h
    macos/NSUserDefaultsStore.mm macos/NSUserDefaultsStore.h
    macos/ObjectReference.h
    macos/SystemTimeChangeWatch.mm)
set(KESTRIN_MACOS_WINDOW_ADAPTERS
    macos/AppKitPreferences.mm macos/AppKitPreferences.h
    macos/AppKitSymbols.mm macos/AppKitSymbols.h)

# Also names the domain of the user defaults, which kestrinctl shares with the application.
set(KESTRIN_BUNDLE_IDENTIFIER "kestrin.mac" CACHE STRING "Identifier of the macOS application bundle")

function(kestrin_use_macos_frameworks target)
    find_library(KESTRIN_APPKIT AppKit REQUIRED)
    find_library(KESTRIN_FOUNDATION Foundation REQUIRED)
    target_compile_definitions(${target} PRIVATE KESTRIN_BUNDLE_IDENTIFIER="${KESTRIN_BUNDLE_IDENTIFIER}")
    target_link_libraries(${target} PRIVATE "${KESTRIN_APPKIT}" "${KESTRIN_FOUNDATION}")
endfunction()
