# Run by CPack over what it is about to pack. Symbols go, as with CPack's own stripping, and with them what compilers
# and linkers say of themselves.
file(GLOB programs "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/*")
foreach(program IN LISTS programs)
    execute_process(COMMAND "${CPACK_STRIP}" --strip-all --remove-section=.comment --remove-section=.note "${program}"
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
