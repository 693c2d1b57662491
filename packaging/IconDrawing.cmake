# kestrin_icon_drawing(file [MARGIN pixels])
#
# Writes the drawing of the application's icon. The mark fills its square of 512 pixels; an icon has the round corners
# that the window gives it, and a margin if one is asked for. The corners are drawn, not clipped, because Qt's reader of
# SVG knows no clipping.
function(kestrin_icon_drawing file)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "MARGIN" "")
    cmake_path(SET mark NORMALIZE "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../design/KestrinIconMark.svg")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${mark}")
    file(READ "${mark}" drawing)
    string(REPLACE "<rect width=\"512\" height=\"512\" " "<rect width=\"512\" height=\"512\" rx=\"112.64\" " icon
        "${drawing}")
    if(icon STREQUAL drawing)
        message(FATAL_ERROR "KestrinIconMark.svg has no background whose corners could be made round.")
    endif()
    if(arg_MARGIN)
        math(EXPR side "512 + 2 * ${arg_MARGIN}")
        string(REPLACE " viewBox=\"0 0 512 512\"" " viewBox=\"-${arg_MARGIN} -${arg_MARGIN} ${side} ${side}\"" icon
            "${icon}")
    endif()
    file(CONFIGURE OUTPUT "${file}" CONTENT "${icon}" @ONLY)
endfunction()

# kestrin_icon_pictures(variable drawing size...)
#
# Has a picture icon-SIZE.png of each size made of the drawing. The variable names them all.
function(kestrin_icon_pictures variable drawing)
    find_program(rsvg-convert rsvg-convert REQUIRED)
    set(pictures "")
    foreach(size IN LISTS ARGN)
        set(picture "${CMAKE_CURRENT_BINARY_DIR}/icon-${size}.png")
        add_custom_command(OUTPUT "${picture}"
            COMMAND "${rsvg-convert}" -w ${size} -h ${size} -o "${picture}" "${drawing}"
            DEPENDS "${drawing}"
            VERBATIM)
        list(APPEND pictures "${picture}")
    endforeach()
    set(${variable} "${pictures}" PARENT_SCOPE)
endfunction()
