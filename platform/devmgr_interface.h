#pragma once

/// The platform library's device manager.

#ifdef __cplusplus
extern "C" {
#endif

enum DEV_CONTROL {
  DEV_REG_CLIENT = 0,
  DEV_START_MONITORING = 1,
  DEV_SET_GSENSOR_THRESHOLD = 2,
  DEV_SET_VOLTAGE_THRESHOLD = 3,
  DEV_SET_TEMP_THRESHOLD = 4,
  DEV_MAX = 5,
};

/// Registers the process as client `id`. Negative on failure.
int DevMgr_RegClient(int id);

/// Request of DEV_CONTROL with `length` bytes of `data`. Negative on failure.
int DevMgr_Control(int request, void* data, int length);

#ifdef __cplusplus
}
#endif
