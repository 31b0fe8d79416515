# The project's libraries are shared, so the many test programs load one copy of each instead of
# carrying their own; the libFuzzer build links everything into each target, as libFuzzer expects.
if(NORVANEBAR_LIBFUZZER)
    set(NORVANEBAR_LIBRARY_TYPE STATIC)
else()
    set(NORVANEBAR_LIBRARY_TYPE SHARED)
endif()

# Every symbol is visible, so a library needs no export macro and no define that says which
# library is being built.
function(norvanebar_add_library target)
    add_library(${target} ${NORVANEBAR_LIBRARY_TYPE} ${ARGN})
    set_target_properties(${target} PROPERTIES DEFINE_SYMBOL "")
endfunction()
