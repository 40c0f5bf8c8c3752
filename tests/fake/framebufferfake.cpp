// A framebuffer and a console where there are none: preloaded into the interface, it answers what is asked of two plain
// files that stand for them.
//   FRAMEBUFFER_FAKE  width height bits stride, of the file that linuxfb's option "fb" names
//   CONSOLE_FAKE      a file that each mode of the console is appended to, a line each: "text" or "graphics"
#include <fcntl.h>
#include <linux/fb.h>
#include <linux/kd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
struct Mode {
  unsigned width = 0, height = 0, bits = 0, stride = 0;
};

bool ReadMode(Mode* mode) {
  const char* said = std::getenv("FRAMEBUFFER_FAKE");
  return said && std::sscanf(said, "%u %u %u %u", &mode->width, &mode->height, &mode->bits, &mode->stride) == 4;
}

int TellVariable(const Mode& mode, fb_var_screeninfo* screen) {
  std::memset(screen, 0, sizeof *screen);
  screen->xres = screen->xres_virtual = mode.width;
  screen->yres = screen->yres_virtual = mode.height;
  screen->bits_per_pixel = mode.bits;
  if (mode.bits == 16) {
    screen->red = {11, 5, 0};
    screen->green = {5, 6, 0};
    screen->blue = {0, 5, 0};
  } else {
    screen->red = {16, 8, 0};
    screen->green = {8, 8, 0};
    screen->blue = {0, 8, 0};
  }
  return 0;
}

int TellFixed(const Mode& mode, fb_fix_screeninfo* screen) {
  std::memset(screen, 0, sizeof *screen);
  screen->line_length = mode.stride;
  screen->smem_len = mode.stride * mode.height;
  return 0;
}

const char* Standing(const char* path) {
  const char* file = std::getenv("FRAMEBUFFER_FILE");
  return file && std::strcmp(path, "/dev/fb0") == 0 ? file : path;
}

int gConsoleMode = KD_TEXT;

int SetConsole(int mode) {
  gConsoleMode = mode;
  const char* file = std::getenv("CONSOLE_FAKE");
  std::FILE* log = file ? std::fopen(file, "a") : nullptr;
  if (!log) return -1;
  std::fputs(mode == KD_GRAPHICS ? "graphics\n" : "text\n", log);
  return std::fclose(log);
}
}  // namespace

extern "C" {
int open64(const char* path, int flags, ...) {
  va_list list;
  va_start(list, flags);
  const int rights = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, int) : 0;
  va_end(list);
  return int(syscall(SYS_openat, AT_FDCWD, Standing(path), flags, rights));
}
int access(const char* path, int kind) noexcept {
  return int(syscall(SYS_faccessat, AT_FDCWD, Standing(path), kind));
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  return int(syscall(SYS_statx, folder, Standing(path), flags, mask, status));
}
int ioctl(int file, unsigned long request, ...) noexcept {
  va_list list;
  va_start(list, request);
  void* const argument = va_arg(list, void*);
  va_end(list);
  Mode mode;
  if (!ReadMode(&mode)) return int(syscall(SYS_ioctl, file, request, argument));
  switch (request) {
    case FBIOGET_VSCREENINFO:
      return TellVariable(mode, static_cast<fb_var_screeninfo*>(argument));
    case FBIOGET_FSCREENINFO:
      return TellFixed(mode, static_cast<fb_fix_screeninfo*>(argument));
    case FBIOBLANK:
      return 0;
    case KDGETMODE:
      std::memcpy(argument, &gConsoleMode, sizeof gConsoleMode);
      return 0;
    case KDSETMODE:
      return SetConsole(int(reinterpret_cast<long>(argument)));
    default:
      return int(syscall(SYS_ioctl, file, request, argument));
  }
}
}

#if __TIMESIZE == 32
// What a program with 64-bit times calls.
__asm__(".globl __ioctl_time64\n.set __ioctl_time64, ioctl");
#endif
