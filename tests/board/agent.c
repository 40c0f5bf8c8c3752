// agent PORT: the hands of the test inside the emulated board. It reads lines from a virtio port and answers each with
// lines of text and one of a point and an exit code, ".0" when all is well.
//   plug             a touch panel appears, with ABS_X, ABS_Y and ABS_PRESSURE of 0..511, as /dev/input/event0
//   unplug           it is gone
//   touch X Y        a finger is there, in panel units
//   lift             it is gone
//   run COMMAND      a shell command; its output
//   picture          waits until something is in the display's memory; the seconds since the kernel started
//   record LINE      to the recorder's socket; its next line
#define _GNU_SOURCE
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/uinput.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static FILE* answers;
static int panel = -1;

static void say(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  vfprintf(answers, format, arguments);
  va_end(arguments);
  fflush(answers);
}

static void end(int code) {
  say(".%d\n", code);
}

static int set_axis(int code, int most) {
  struct uinput_abs_setup axis = {.code = (unsigned short)code, .absinfo = {.maximum = most}};
  return ioctl(panel, UI_SET_ABSBIT, code) == 0 && ioctl(panel, UI_ABS_SETUP, &axis) == 0;
}

static int plug(void) {
  struct uinput_setup setup = {.id = {.bustype = BUS_VIRTUAL}, .name = "panel"};
  char name[64] = "", path[160];
  panel = open("/dev/uinput", O_WRONLY | O_CLOEXEC);
  if (panel < 0 || ioctl(panel, UI_SET_EVBIT, EV_ABS) != 0 || !set_axis(ABS_X, 511) || !set_axis(ABS_Y, 511) ||
      !set_axis(ABS_PRESSURE, 511) || ioctl(panel, UI_DEV_SETUP, &setup) != 0 || ioctl(panel, UI_DEV_CREATE) != 0 ||
      ioctl(panel, UI_GET_SYSNAME(sizeof name), name) < 0)
    return errno;
  snprintf(path, sizeof path, "/sys/devices/virtual/input/%s", name);
  DIR* folder = opendir(path);
  if (folder == NULL) return errno;
  for (const struct dirent* entry; (entry = readdir(folder)) != NULL;)
    if (strncmp(entry->d_name, "event", 5) == 0) {
      unlink("/dev/input/event0");
      if (strcmp(entry->d_name, "event0") != 0 && symlink(entry->d_name, "/dev/input/event0") != 0) return errno;
    }
  closedir(folder);
  return 0;
}

static int unplug(void) {
  unlink("/dev/input/event0");
  const int failed = panel < 0 || close(panel) != 0;
  panel = -1;
  return failed;
}

static void send_event(int type, int code, int value) {
  const struct input_event event = {.type = (unsigned short)type, .code = (unsigned short)code, .value = value};
  if (write(panel, &event, sizeof event) != sizeof event) perror("agent: panel");
}

static int press(const char* text) {
  int x, y;
  if (sscanf(text, "%d %d", &x, &y) != 2 || panel < 0) return 1;
  send_event(EV_ABS, ABS_X, x);
  send_event(EV_ABS, ABS_Y, y);
  send_event(EV_ABS, ABS_PRESSURE, 200);
  send_event(EV_SYN, SYN_REPORT, 0);
  return 0;
}

static int lift(void) {
  send_event(EV_ABS, ABS_PRESSURE, 0);
  send_event(EV_SYN, SYN_REPORT, 0);
  return 0;
}

static int run(const char* command) {
  char line[4096];
  FILE* output = popen(command, "r");
  if (output == NULL) return errno;
  while (fgets(line, sizeof line, output) != NULL) say("%s", line);
  const int status = pclose(output);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

static int await_picture(void) {
  const int display = open("/dev/fb0", O_RDONLY | O_CLOEXEC);
  unsigned pixel = 0;
  while (pread(display, &pixel, sizeof pixel, 0) == sizeof pixel && (pixel & 0xFFFFFF) == 0) usleep(10000);
  if (display < 0 || close(display) != 0 || (pixel & 0xFFFFFF) == 0) return 1;
  struct timespec now;
  clock_gettime(CLOCK_BOOTTIME, &now);
  say("%.2f\n", (double)now.tv_sec + (double)now.tv_nsec / 1e9);
  return 0;
}

static int record(const char* line) {
  struct sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = "/run/recorder-control.sock"};
  const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(file, (struct sockaddr*)&address, sizeof address) != 0) return errno;
  dprintf(file, "%s\n", line);
  FILE* channel = fdopen(file, "r");
  char* answer = NULL;
  size_t room = 0;
  const ssize_t length = getline(&answer, &room, channel);
  if (length > 0) say("%s", answer);
  free(answer);
  fclose(channel);
  return length > 0 ? 0 : 1;
}

int main(int argc, char** argv) {
  const int file = argc == 2 ? open(argv[1], O_RDWR | O_CLOEXEC) : -1;
  FILE* port = fdopen(file, "r");
  answers = fdopen(dup(file), "w");
  if (port == NULL || answers == NULL) {
    perror("agent");
    return 1;
  }
  char* line = NULL;
  size_t room = 0;
  for (;;) {
    const ssize_t length = getline(&line, &room, port);
    if (length < 0) {  // nobody has the other end open
      clearerr(port);
      usleep(100000);
      continue;
    }
    if (length > 0 && line[length - 1] == '\n') line[length - 1] = '\0';
    if (strcmp(line, "plug") == 0)
      end(plug());
    else if (strcmp(line, "unplug") == 0)
      end(unplug());
    else if (strncmp(line, "touch ", 6) == 0)
      end(press(line + 6));
    else if (strcmp(line, "lift") == 0)
      end(lift());
    else if (strncmp(line, "run ", 4) == 0)
      end(run(line + 4));
    else if (strcmp(line, "picture") == 0)
      end(await_picture());
    else if (strncmp(line, "record ", 7) == 0)
      end(record(line + 7));
    else
      end(127);
  }
}
