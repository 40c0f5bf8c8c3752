# Not built here. Its pictures are drawn on Debian 12 before: `cmake --preset dev && ninja -C build/dev pictures`. Its font,
# NanumBarunGothic.ttf and NanumBarunGothicBold.ttf, is the image's to have.
SUMMARY = "Touch-screen interface of a dash camera"
LICENSE = "CLOSED"

inherit externalsrc qt6-cmake systemd

# The layer lies in the source tree.
EXTERNALSRC = "${@os.path.realpath(d.getVar('FILE_DIRNAME') + '/../../../../..')}"

DEPENDS = "qtbase qt5compat qttools-native"

DASHCAM_PICTURES ?= "${EXTERNALSRC}/build/dev/pictures"
# The vendor's library; empty: the substitute.
DASHCAM_PLATFORM_LIBRARY ?= ""

EXTRA_OECMAKE += " \
    -DDASHCAM_BENCH=OFF \
    -DDASHCAM_VIDEO=OFF \
    -DDRAWN_PICTURES=${DASHCAM_PICTURES} \
    -DPLATFORM_LIBRARY=${DASHCAM_PLATFORM_LIBRARY} \
"

SYSTEMD_SERVICE:${PN} = "dashcam-gui.service"

# Where /usr is not merged the units have another place.
do_install:append() {
    if [ "${systemd_system_unitdir}" != "${prefix}/lib/systemd/system" ]; then
        install -d ${D}${systemd_system_unitdir}
        mv ${D}${prefix}/lib/systemd/system/* ${D}${systemd_system_unitdir}/
        rm -r ${D}${prefix}/lib/systemd
    fi
}

FILES:${PN} += "/opt/gui /usr/local/etc ${prefix}/lib/dashcam ${systemd_system_unitdir}"
CONFFILES:${PN} = "${sysconfdir}/default/dashcam-gui"
