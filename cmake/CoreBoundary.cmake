# Keeps src/core free of the window system, at configure time for what it links and at build
# time for what its sources include or use.
function(norvanebar_enforce_core_boundary target)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    foreach(library IN LISTS libraries)
        if(library MATCHES "Widgets|Qml|Quick|DBus|X11|xcb|wayland")
            message(FATAL_ERROR "${target} must not link ${library}: the core knows nothing of the window system")
        endif()
    endforeach()
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/core-boundary.stamp")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h" "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND ${CMAKE_COMMAND} -DDIR=${CMAKE_CURRENT_SOURCE_DIR} -DSTAMP=${stamp}
                -P ${PROJECT_SOURCE_DIR}/cmake/check-core-boundary.cmake
        DEPENDS ${sources} ${PROJECT_SOURCE_DIR}/cmake/check-core-boundary.cmake
        COMMENT "Checking that ${target} stays free of the window system")
    add_custom_target(${target}_boundary DEPENDS "${stamp}")
    add_dependencies(${target} ${target}_boundary)
endfunction()
