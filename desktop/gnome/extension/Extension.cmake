# The GNOME shell's extension, made in both forms of its body: scripts until 44, modules from 45 on.
set(KESTRIN_GNOME_EXTENSION "windows@kestrin.example")
set(KESTRIN_WINDOWS_NAME "example.kestrin.Windows")
set(KESTRIN_WINDOWS_PATH "/example/kestrin/Windows")
set(KESTRIN_ALLOWED_PROGRAMS "desktop-programs")

# A shell looks for one form only, and what runs it comes with it: the version of gjs tells which one.
find_program(gjs gjs)
set(form 45-plus)
if(gjs)
    execute_process(COMMAND "${gjs}" --version OUTPUT_VARIABLE version)
    string(REGEX MATCH "[0-9.]+" version "${version}")
    if(version VERSION_LESS 1.77)
        set(form 43-44)
    endif()
endif()
set(KESTRIN_GNOME_EXTENSION_FORM "${form}" CACHE STRING "Which GNOME shells the installed extension is for: 43-44 or 45-plus")
# Seen from a folder in which programs are built.
set(KESTRIN_BUILT_EXTENSION "../desktop/gnome/${KESTRIN_GNOME_EXTENSION_FORM}/${KESTRIN_GNOME_EXTENSION}")

file(READ "${CMAKE_CURRENT_LIST_DIR}/service.js" service)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/service.js")
string(CONFIGURE "${service}" KESTRIN_WINDOWS_SERVICE @ONLY)
set(versions_43-44 [=[["43", "44"]]=])
set(versions_45-plus [=[["45", "46", "47", "48", "49", "50", "51"]]=])
foreach(form IN ITEMS 43-44 45-plus)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/gnome/${form}/${KESTRIN_GNOME_EXTENSION}")
    set(versions "${versions_${form}}")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/${form}.js.in" "${folder}/extension.js" @ONLY)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/metadata.json.in" "${folder}/metadata.json" @ONLY)
endforeach()
install(DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/gnome/${KESTRIN_GNOME_EXTENSION_FORM}/${KESTRIN_GNOME_EXTENSION}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/gnome-shell/extensions")
