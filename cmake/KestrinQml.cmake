# kestrin_qml_module(target URI uri QML_FILES ... [SOURCES ...] [DEPENDENCIES ...])
#
# Makes the library a QML module that every engine of a program finds in the program itself, without a plugin or an
# import path. A program that links it calls qml_register_types_<uri>() and initialises the resources
# qmake_<uri> and qmlcache_<target>.
function(kestrin_qml_module target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "URI" "")
    # In one folder all of them, where Qt's compilers and qmllint find them, also the module itself.
    set(folder "${PROJECT_BINARY_DIR}/qml")
    # The engine reads the module's own description; with the other compression a library of its own is read for it.
    set(QT_FEATURE_zstd OFF)
    qt_add_qml_module(${target} ${ARGN} VERSION 1.0 NO_PLUGIN RESOURCE_PREFIX /qt-project.org/imports
        OUTPUT_DIRECTORY "${folder}/${arg_URI}" IMPORT_PATH "${folder}")
    # What Qt's compilers write is not ours to improve, nor to check. The views are joined: a compiler has more to do
    # with the headers of Qt than with what is in one of them.
    set(options -w -Os)
    if(KESTRIN_SANITIZE)
        set(options -w -O0 -fno-sanitize=all)
    elseif(CMAKE_INTERPROCEDURAL_OPTIMIZATION)
        set(options -w -O0 -fno-lto)
    endif()
    get_target_property(sources ${target} SOURCES)
    set(views ${sources})
    list(FILTER views INCLUDE REGEX "/\\.rcc/qmlcache/.*_qml\\.cpp$")
    set_source_files_properties(${views} PROPERTIES HEADER_FILE_ONLY ON)
    set(joined "${CMAKE_CURRENT_BINARY_DIR}/${target}_views.cpp")
    list(TRANSFORM views REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
    string(JOIN "" includes ${includes})
    file(CONFIGURE OUTPUT "${joined}" CONTENT "${includes}" @ONLY)
    set_source_files_properties("${joined}" PROPERTIES OBJECT_DEPENDS "${views}" SKIP_AUTOMOC ON)
    target_sources(${target} PRIVATE "${joined}")

    list(FILTER sources INCLUDE REGEX "/\\.rcc/qmlcache/.*loader\\.cpp$|_qmltyperegistrations\\.cpp$")
    set_source_files_properties(${sources} "${joined}" PROPERTIES COMPILE_OPTIONS "${options}")
endfunction()
