# The Debian package, built by CPack from the install rules of Install.cmake:
#   cpack --config build/main/CPackConfig.cmake -B build/package
# dpkg-shlibdeps finds the libraries the program links; the rest of what it needs at run time is
# named below: the GStreamer elements of the screen recording, the QML modules of the windows, Qt's
# platform and SVG plugins, and a Secret Service for the tokens.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME norvanebar)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The NorvaneBar developers")
set(CPACK_PACKAGE_CONTACT "NorvaneBar maintainers <maintainers@norvanebar.com>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
# The program and its desktop files, with the package's own copyright, changelog and lintian
# overrides, in one package.
set(CPACK_INSTALL_CMAKE_PROJECTS
    ${PROJECT_BINARY_DIR} ${PROJECT_NAME} norvanebar /
    ${PROJECT_BINARY_DIR} ${PROJECT_NAME} debian /)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://norvanebar.com)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Where dpkg-shlibdeps finds the project's own libraries beside the program's.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${norvanebar_private_libdir})
# The first line is the short description; the lines after it, each indented by one space in the
# control file, the long one.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "create Norvane tasks from the panel
NorvaneBar is a tray client of the Norvane task-management service for Linux
desktops, on X11 and Wayland. It sits in the panel beside other applications:
a click on its icon, or a shortcut, opens a small popover in which a task is
composed and created without a browser, with its list, due date, fields and
attachments. It can also record the screen, with the microphone and the
camera, into a task, and lists the tasks due today.")

set(norvanebar_runtime_depends
    # libcrypto, which the program loads for the digests of an R2 upload
    libssl3
    # Qt's X11 and Wayland platform plugins, and the SVG plugins that draw the symbols
    qt6-qpa-plugins
    libqt6svg6
    # the QML modules the windows import
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-controls
    qml6-module-qtquick-templates
    qml6-module-qtquick-layouts
    qml6-module-qtquick-window
    qml6-module-qtquick-dialogs
    qml6-module-qt-labs-folderlistmodel
    qml6-module-qtmultimedia
    # the recording: appsrc, appsink, videoconvert, videoscale, videorate, audiorate (base);
    # ximagesrc, pulsesrc, v4l2src, videoflip, qtmux (good); h264parse, openh264enc (bad);
    # x264enc (ugly); pipewiresrc for the ScreenCast portal; libav decodes the movie for its review
    gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good
    gstreamer1.0-plugins-bad
    gstreamer1.0-plugins-ugly
    gstreamer1.0-pipewire
    gstreamer1.0-libav)
list(JOIN norvanebar_runtime_depends ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# The tokens are kept in a Secret Service; the portals give the screen cast, the screenshot and the
# global shortcuts; xdg-utils opens the browser where no portal does.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnome-keyring | org.freedesktop.secrets, xdg-desktop-portal, xdg-utils")

include(CPack)
