# The manual pages, compressed as Debian wants them. That of kestrinctl is completed from the program's own help.

file(READ manual/files.roff KESTRIN_MANUAL_FILES)
string(CONFIGURE "${KESTRIN_MANUAL_FILES}" KESTRIN_MANUAL_FILES @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS manual/files.roff)
set(KESTRIN_SEE_ALSO "")
if(TARGET kestrin)
    set(KESTRIN_SEE_ALSO ".BR kestrin (1),\n")
endif()

configure_file(manual/kestrinctl.1.in kestrinctl.1.incomplete @ONLY)
add_custom_command(OUTPUT kestrinctl.1.gz
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/manual/with-commands" kestrinctl.1.incomplete $<TARGET_FILE:kestrinctl>
        > kestrinctl.1
    COMMAND gzip -9nc kestrinctl.1 > kestrinctl.1.gz
    DEPENDS kestrinctl manual/with-commands "${CMAKE_CURRENT_BINARY_DIR}/kestrinctl.1.incomplete"
    VERBATIM)
set(pages "${CMAKE_CURRENT_BINARY_DIR}/kestrinctl.1.gz")

if(TARGET kestrin)
    configure_file(manual/kestrin.1.in kestrin.1 @ONLY)
    add_custom_command(OUTPUT kestrin.1.gz
        COMMAND gzip -9nc kestrin.1 > kestrin.1.gz
        DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/kestrin.1"
        VERBATIM)
    list(APPEND pages "${CMAKE_CURRENT_BINARY_DIR}/kestrin.1.gz")
endif()

add_custom_target(kestrin_manual ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
