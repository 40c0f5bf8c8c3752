################################################################################
#
# dashcam-gui
#
################################################################################

# Not built here.
DASHCAM_GUI_VERSION = 0.1
DASHCAM_GUI_SITE = $(BR2_EXTERNAL_DASHCAM_PATH)/../..
DASHCAM_GUI_SITE_METHOD = local
DASHCAM_GUI_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS = --exclude /build
DASHCAM_GUI_DEPENDENCIES = host-qt6tools qt6base qt6core5compat
DASHCAM_GUI_CONF_OPTS = \
	-DDASHCAM_BENCH=OFF \
	-DDASHCAM_VIDEO=OFF \
	-DDRAWN_PICTURES=$(call qstrip,$(BR2_PACKAGE_DASHCAM_GUI_PICTURES)) \
	-DPLATFORM_LIBRARY=$(call qstrip,$(BR2_PACKAGE_DASHCAM_GUI_PLATFORM_LIBRARY))

$(eval $(cmake-package))
