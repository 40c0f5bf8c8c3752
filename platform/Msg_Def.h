#pragma once

/// Status messages of the recorder firmware to the interface, on a System V queue.
///
/// The type word is the machine's own `long` (4 bytes on the camera, 8 on a 64-bit machine); the 28 bytes after it are
/// the same everywhere. GUI_MSG_SIZE is what msgsnd and msgrcv are given.

#ifdef __cplusplus
extern "C" {
#endif

struct GUI_MSG_BUF {
  long des;    ///< receiver's id = System V message type; the interface is GUI_ID
  int cmd;     ///< status event, 0..38
  int src;     ///< sender's id, 2 or more; the reply goes to it
  int shmid;   ///< shared-memory id; the interface does not use it
  int length;  ///< bytes of payload in the segment
  int offset;  ///< first byte of the payload in the segment
  int ack;     ///< GUI_ACK
  int ret;     ///< GUI_RET
};

enum GUI_ACK {
  GUI_ACK_YES = 0,  ///< the sender waits for a reply
  GUI_ACK_NO = 1,
};

enum GUI_RET {
  GUI_RET_ERR = 0,
  GUI_RET_NORET = 1,   ///< no reply wanted
  GUI_RET_NODATA = 2,  ///< the reply carries no data
  GUI_RET_DATA = 3,    ///< the reply carries data
};

enum {
  GUI_ID = 1,             ///< the interface's own id
  GUI_MSG_SIZE = 28,      ///< bytes of a message after its type word
  GUI_SLOT_SIZE = 12288,  ///< bytes of the segment that each sender id from 2 upwards owns
};

#ifdef __cplusplus
}
#endif
