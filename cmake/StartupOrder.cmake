# The functions a library runs while the program starts and rests are laid out together at the
# head of its code, in the list's order; scripts/startup_order.py writes the lists from a run of the
# program. The kernel maps a library's code into a process by the 64 KiB around each page it first
# touches, so a few startup functions spread over a whole library make all of it resident, where
# packed they take a few such windows. Each function gets a section of its own for lld to place.
function(norvanebar_order_startup_code target list)
    if(NOT NORVANEBAR_LIBRARY_TYPE STREQUAL SHARED)
        return()
    endif()
    target_compile_options(${target} PRIVATE -ffunction-sections)
    target_link_options(${target} PRIVATE -fuse-ld=lld LINKER:--symbol-ordering-file=${list}
        LINKER:--no-warn-symbol-ordering)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list})
endfunction()
