#pragma once

/// The platform library's calls for the interface's status queue and shared memory. Any thread.

#ifdef __cplusplus
extern "C" {
#endif

/// Opens the status queue of the interface. Gives its System V id, negative on failure.
int Gui_InitMessage(void);

/// Attaches the shared-memory segment of the status payloads. Gives its id, negative on failure.
int Gui_InitSharedMemory(void);

/// Copies `length` bytes at `offset` of segment `mid` into `buffer`. 0, or negative when nothing was copied.
int ShareMemReadByMid(int mid, int offset, void* buffer, int length);

/// Copies `length` bytes of `data` to `offset` of segment `mid`; a null `data` addresses the place and copies nothing.
/// 0, or negative when nothing was copied.
int ShareMemWriteByMid(int mid, int offset, void* data, int length);

#ifdef __cplusplus
}
#endif
