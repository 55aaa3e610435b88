# SPDX-License-Identifier: MIT
# The Debian packages: `scripts/package`.
set(TINDRA_CONTACT "Tindra developers <developers@tindra.example>" CACHE STRING
    "Whom the packages name as their maintainer")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tindra)
set(CPACK_PACKAGE_CONTACT ${TINDRA_CONTACT})
# Each description has its own summary as its first line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENTS_ALL tindra tindra-community)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEB_COMPONENT_INSTALL ON)
# By DESTDIR, so that CMAKE_INSTALL_PREFIX is the one of the system that it is installed on.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_TINDRA_PACKAGE_NAME tindra)
set(CPACK_DEBIAN_TINDRA_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TINDRA_DESCRIPTION
"watcher for EuroBonus award seats
Tindra looks at the airline's own booking site every few minutes for the
journeys that you want to make with your EuroBonus points, in an embedded
browser that is signed in as you, and tells you the moment a seat opens.
The interface is Norwegian.")
# Beside the libraries: what WebKit builds its sandbox with, and what the windows import, themselves
# or by way of another module; the modules' packages do not depend on each other.
set(needed bubblewrap hicolor-icon-theme qml6-module-qt-labs-qmlmodels qml6-module-qtqml
    qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
    qml6-module-qtquick-layouts qml6-module-qtquick-shapes qml6-module-qtquick-templates
    xdg-dbus-proxy)
list(JOIN needed ", " CPACK_DEBIAN_TINDRA_PACKAGE_DEPENDS)
# What Tindra goes on without, saying so: notifications, a keychain, the bus they are on.
set(wished "default-dbus-session-bus | dbus-session-bus" fonts-inter fonts-noto-color-emoji
    "gnome-keyring | libkf5wallet-bin | libkf6wallet-bin | keepassxc"
    "notification-daemon | gnome-shell" qt6-wayland)
list(JOIN wished ", " CPACK_DEBIAN_TINDRA_PACKAGE_RECOMMENDS)
set(CPACK_DEBIAN_TINDRA_PACKAGE_SUGGESTS xvfb)

set(CPACK_DEBIAN_TINDRA-COMMUNITY_PACKAGE_NAME tindra-community)
set(CPACK_DEBIAN_TINDRA-COMMUNITY_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TINDRA-COMMUNITY_DESCRIPTION
"exchange of finds between installs of Tindra
A small HTTP service that takes the award seats that hunters have found, and
gives them to other hunters. It keeps them in SQLite or in Redis.
It runs as a system service with a user of its own, on this machine's own
address only until it is told another.")
set(CPACK_DEBIAN_TINDRA-COMMUNITY_PACKAGE_SUGGESTS redis-server)
set(CPACK_DEBIAN_TINDRA-COMMUNITY_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/community/postinst
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/community/prerm
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/community/postrm)

include(CPack)
