# The Debian package: cpack -G DEB in the build folder.
set(KV_PACKAGE_MAINTAINER "Korvane Map Editor developers <mapedit@korvane.org>"
    CACHE STRING "The Debian package's maintainer")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvane-mapedit)
set(CPACK_PACKAGE_VERSION ${KV_PACKAGE_VERSION})
set(CPACK_PACKAGE_VENDOR "The Korvane Map Editor developers")
set(CPACK_PACKAGE_CONTACT ${KV_PACKAGE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "map editor for the hexagonal battle maps of Korvane")
# One paragraph, lines of at most 79 characters as Debian wants them.
string(JOIN "\n" CPACK_PACKAGE_DESCRIPTION
  "The Korvane Map Editor makes and edits the hexagonal battle maps of the"
  "turn-based wargame Korvane: tiles, terrain, roads and railroads on a"
  "scrolling hex grid, owners, objectives, deployment hexes, elevations and hex"
  "names, saved with their side files exactly as the game reads them. It learns"
  "auto-tiling from what the designer paints, checks roads and control, builds"
  "the computer player's distance tables, draws jump maps and map pictures,"
  "turns pictures into maps and imports the older game's scenario sets. The"
  "command-line tool korvane-map does the same without a window and runs"
  "scripts that drive the editor.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${KV_PACKAGE_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${KV_PROJECT_URL})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "hicolor-icon-theme, shared-mime-info")
include(CPack)
