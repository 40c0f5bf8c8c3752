# Written to Buildroot's conventions; not built here.
include $(sort $(wildcard $(BR2_EXTERNAL_DASHCAM_PATH)/package/*/*.mk))
