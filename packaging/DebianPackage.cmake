# SPDX-License-Identifier: GPL-3.0-or-later
# The Debian package: `cpack -G DEB` in the build folder packs exactly what `cmake --install`
# installs into tolvane_<version>_<arch>.deb. dpkg-shlibdeps works out the libraries it needs;
# the desktop's file triggers (desktop-file-utils, shared-mime-info, hicolor-icon-theme) bring
# their caches up to date, so the package needs no scripts of its own.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "Tolvane developers <developers@tolvane.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer for design files")
set(CPACK_PACKAGE_DESCRIPTION "Tolvane opens Illustrator, InDesign, EPS, FreeHand and Swatch \
Exchange files\nread-only and shows each in a window through a preview drawn by its \
companion\ngenerator, Vistrel Pro, which also gives file managers thumbnails of them.")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://tolvane.example/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Ghostscript draws PostScript and EPS previews; it runs as a program, so no library names it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ghostscript")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Packed as `cmake --install --strip` installs it.
set(CPACK_STRIP_FILES ON)
include(CPack)
