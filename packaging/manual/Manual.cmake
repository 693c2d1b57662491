# The manual pages: what the programs tell of themselves, and what is beside this file.

configure_file(manual/files.h2m.in files.h2m @ONLY)
set(pages "")
foreach(program IN ITEMS kestrinctl kestrin)
    if(TARGET ${program})
        configure_file(manual/${program}.h2m.in ${program}.h2m @ONLY)
        set(page "${CMAKE_CURRENT_BINARY_DIR}/${program}.1")
        add_custom_command(OUTPUT "${page}"
            COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/manual/make-page" $<TARGET_FILE:${program}> > ${program}.1
            DEPENDS ${program} manual/make-page
                "${CMAKE_CURRENT_BINARY_DIR}/${program}.h2m" "${CMAKE_CURRENT_BINARY_DIR}/files.h2m"
            VERBATIM)
        list(APPEND pages "${page}")
    endif()
endforeach()
add_custom_target(kestrin_manual ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
