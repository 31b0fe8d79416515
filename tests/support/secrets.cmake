# A secret store in memory, for the unit tests of the keychain items, the token provider and the
# storage credentials, and a way to wait for a task that may throw.
add_library(norvanebar_test_secrets STATIC
    ${CMAKE_CURRENT_LIST_DIR}/MemorySecretStore.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MemorySecretStore.h
    ${CMAKE_CURRENT_LIST_DIR}/RunTask.h
)
target_include_directories(norvanebar_test_secrets PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(norvanebar_test_secrets PUBLIC norvanebar_core)
