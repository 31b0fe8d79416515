# The boundaries the build enforces: no window system in the core, one layer order of its features,
# and includes that name their layer.

# Keeps src/core free of the window system, at configure time for what it links and at build
# time for what its sources include or use.
function(norvanebar_enforce_core_boundary target)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    foreach(library IN LISTS libraries)
        if(library MATCHES "Widgets|Qml|Quick|DBus|X11|xcb|wayland")
            message(FATAL_ERROR "${target} must not link ${library}: the core knows nothing of the window system")
        endif()
    endforeach()
    norvanebar_check_sources(${target} boundary ${PROJECT_SOURCE_DIR}/cmake/check-core-boundary.cmake
                             "Checking that ${target} stays free of the window system")
endfunction()

# Keeps the feature folders of src/core in the one layer order of check-layer-order.cmake: each
# includes only itself and the features before it.
function(norvanebar_enforce_layer_order target)
    norvanebar_check_sources(${target} layers ${PROJECT_SOURCE_DIR}/cmake/check-layer-order.cmake
                             "Checking that the features of ${target} keep their layer order")
endfunction()

# Keeps every include of <target>'s sources naming its layer, one of LAYERS, which are the ones the
# target may include (check-include-layers.cmake).
function(norvanebar_enforce_include_layers target)
    cmake_parse_arguments(arg "" "" "LAYERS" ${ARGN})
    list(JOIN arg_LAYERS "," layers)
    norvanebar_check_sources(${target} includes ${PROJECT_SOURCE_DIR}/cmake/check-include-layers.cmake
                             "Checking that the includes of ${target} name their layer" -DLAYERS=${layers})
endfunction()

# Runs the check <script> on the folder of the calling CMakeLists before <target> builds, and again
# whenever a source there changes; a refusal fails the build. Further arguments go to the script.
function(norvanebar_check_sources target check script comment)
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}-${check}.stamp")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h" "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND ${CMAKE_COMMAND} -DDIR=${CMAKE_CURRENT_SOURCE_DIR} -DSTAMP=${stamp} ${ARGN} -P ${script}
        DEPENDS ${sources} ${script}
        COMMENT "${comment}")
    add_custom_target(${target}_${check} DEPENDS "${stamp}")
    add_dependencies(${target} ${target}_${check})
endfunction()
