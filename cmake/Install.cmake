# What `cmake --install` puts under the prefix, in the places the freedesktop standards name: the
# program, its desktop entry (which also makes it the handler of the sign-in's scheme), the
# application icon as SVG and as PNG of every size the hicolor theme asks for, the monochrome tray
# icon and the AppStream metainfo. The Debian package's own files (copyright, changelog, lintian
# overrides) are a component of their own that only the package takes.
include(GNUInstallDirs)

set(NORVANEBAR_APP_ID com.norvanebar.NorvaneBar)
set(norvanebar_data ${PROJECT_SOURCE_DIR}/data)

# `norvanebar --version` and QApplication::applicationVersion() say the project's version.
target_compile_definitions(norvanebar PRIVATE NORVANEBAR_VERSION="${PROJECT_VERSION}")

# The program with the project's two shared libraries, which only it loads: they go into a folder of
# their own under lib/, which the program and the platform library find relative to themselves, so
# the installed tree works under any prefix.
# On Debian that is lib/<multiarch triplet>/norvanebar, where no other program looks (and ldconfig
# need not know it).
if(CMAKE_LIBRARY_ARCHITECTURE)
    set(norvanebar_private_libdir lib/${CMAKE_LIBRARY_ARCHITECTURE}/norvanebar)
else()
    set(norvanebar_private_libdir ${CMAKE_INSTALL_LIBDIR}/norvanebar)
endif()
file(RELATIVE_PATH norvanebar_bin_to_libs /${CMAKE_INSTALL_BINDIR} /${norvanebar_private_libdir})
set_target_properties(norvanebar PROPERTIES INSTALL_RPATH "$ORIGIN/${norvanebar_bin_to_libs}")
set_target_properties(norvanebar_platform norvanebar_media PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(norvanebar_core PROPERTIES INSTALL_RPATH "")
# The modules sit beside the libraries; the program looks for them there.
set_target_properties(norvanebar_windows norvanebar_recording_devices PROPERTIES INSTALL_RPATH "$ORIGIN")
target_compile_definitions(norvanebar_shell PRIVATE NORVANEBAR_MODULE_DIR="${norvanebar_bin_to_libs}")
install(TARGETS norvanebar_windows norvanebar_recording_devices LIBRARY DESTINATION ${norvanebar_private_libdir} COMPONENT norvanebar)
install(TARGETS norvanebar RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT norvanebar)
install(TARGETS norvanebar_core norvanebar_platform norvanebar_media
    LIBRARY DESTINATION ${norvanebar_private_libdir} COMPONENT norvanebar NAMELINK_SKIP)
install(FILES ${norvanebar_data}/${NORVANEBAR_APP_ID}.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT norvanebar)

# The bitmaps are drawn from the one SVG at build time.
add_subdirectory(${PROJECT_SOURCE_DIR}/tools/render-icon ${PROJECT_BINARY_DIR}/tools/render-icon)
set(norvanebar_icon_svg ${norvanebar_data}/icons/${NORVANEBAR_APP_ID}.svg)
set(norvanebar_icon_sizes 16 22 24 32 48 64 128 256 512)
set(norvanebar_icon_pngs)
foreach(side IN LISTS norvanebar_icon_sizes)
    set(folder ${PROJECT_BINARY_DIR}/icons/hicolor/${side}x${side}/apps)
    set(png ${folder}/${NORVANEBAR_APP_ID}.png)
    add_custom_command(OUTPUT ${png}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND norvanebar-render-icon ${norvanebar_icon_svg} ${side} ${png}
        DEPENDS norvanebar-render-icon ${norvanebar_icon_svg}
        COMMENT "Drawing the ${side}x${side} application icon" VERBATIM)
    list(APPEND norvanebar_icon_pngs ${png})
    install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${side}x${side}/apps
        COMPONENT norvanebar)
endforeach()
add_custom_target(norvanebar_icons ALL DEPENDS ${norvanebar_icon_pngs})
install(FILES ${norvanebar_icon_svg}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT norvanebar)
install(FILES ${norvanebar_data}/icons/${NORVANEBAR_APP_ID}-symbolic.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps COMPONENT norvanebar)

configure_file(${norvanebar_data}/${NORVANEBAR_APP_ID}.metainfo.xml.in
    ${PROJECT_BINARY_DIR}/${NORVANEBAR_APP_ID}.metainfo.xml @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${NORVANEBAR_APP_ID}.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT norvanebar)

# The Debian package's documentation: the machine-readable copyright and the changelog, compressed
# as Debian wants it (gzip -9n: no name or time stamp, so the same bytes each build). The version
# has no Debian revision, so the package is native and its changelog is changelog.gz.
set(norvanebar_changelog ${PROJECT_BINARY_DIR}/debian/changelog.gz)
add_custom_command(OUTPUT ${norvanebar_changelog}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/debian
    COMMAND sh -c "gzip -9n -c \"$1\" > \"$2\"" sh ${norvanebar_data}/debian/changelog ${norvanebar_changelog}
    DEPENDS ${norvanebar_data}/debian/changelog
    COMMENT "Compressing the Debian changelog" VERBATIM)
add_custom_target(norvanebar_debian_changelog ALL DEPENDS ${norvanebar_changelog})
install(FILES ${norvanebar_data}/debian/copyright ${norvanebar_changelog}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/norvanebar COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES ${norvanebar_data}/debian/lintian-overrides RENAME norvanebar
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT debian EXCLUDE_FROM_ALL)
