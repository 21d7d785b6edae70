# Where `cmake --install` and the package put things, relative to the prefix.
include(GNUInstallDirs)
# The editor link's Windows helper is no command for the user's PATH; the
# Linux program looks for it beside itself, then here.
set(OMBREVALE_INSTALL_HELPERDIR "lib/ombrevale" CACHE STRING "Where ombrevale-link.exe is installed, relative to the prefix")
file(RELATIVE_PATH OMBREVALE_HELPER_FROM_BIN "/${CMAKE_INSTALL_BINDIR}" "/${OMBREVALE_INSTALL_HELPERDIR}")
