#include "gui/app/framebuffer.h"

#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QList>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {
constexpr unsigned kWidth = 480, kHeight = 320;

// What linuxfb opens when it is not told.
QByteArray DefaultDevice() {
  for (const char* device : {"/dev/fb0", "/dev/graphics/fb0"})
    if (access(device, F_OK) == 0) return device;
  return "/dev/fb0";
}

/// The argument after the last "-platform"; null: there is none.
char** PlatformArgument(int argc, char** argv) {
  char** found = nullptr;
  for (int i = 1; i + 1 < argc; ++i)
    if (std::strcmp(argv[i], "-platform") == 0 || std::strcmp(argv[i], "--platform") == 0) found = &argv[++i];
  return found;
}
}  // namespace

bool Framebuffer::Choose(int argc, char** argv) {
  char** const argument = PlatformArgument(argc, argv);
  mPlatform = argument ? QByteArray(*argument) : qgetenv("QT_QPA_PLATFORM");
  const bool hasServer = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (mPlatform.isEmpty() && !hasServer) mPlatform = "linuxfb";
  const QList<QByteArray> options = mPlatform.split(':');
  if (options.first() != "linuxfb") return true;

  QByteArray device = DefaultDevice();
  bool isSizeGiven = false, isPlaceGiven = false;
  for (const QByteArray& option : options) {
    if (option.startsWith("fb=")) device = option.mid(3);
    if (option.startsWith("size=")) isSizeGiven = true;
    if (option.startsWith("offset=")) isPlaceGiven = true;
  }
  const int file = open(device.constData(), O_RDWR | O_CLOEXEC);
  fb_var_screeninfo screen{};
  const bool isThere = file >= 0 && ioctl(file, FBIOGET_VSCREENINFO, &screen) == 0;
  const int reason = errno;
  if (file >= 0) close(file);
  if (!isThere) {
    std::fprintf(stderr, "The framebuffer %s cannot be used: %s.\n", device.constData(), std::strerror(reason));
    return false;
  }
  if (!isSizeGiven && (screen.xres != kWidth || screen.yres != kHeight)) {
    const bool fits = screen.xres >= kWidth && screen.yres >= kHeight;
    if (!isPlaceGiven)
      std::fprintf(stderr, "The framebuffer %s has %u x %u pixels and not %u x %u: the picture %s.\n",
                   device.constData(), screen.xres, screen.yres, kWidth, kHeight,
                   fits ? "stands in its middle" : "is cut off at the right or below");
    // Behind the place, which linuxfb would else take off the size; without one it is the middle.
    mPlatform += ":size=" + QByteArray::number(kWidth) + "x" + QByteArray::number(kHeight);
    mDevice = device;
  }
  if (argument)
    *argument = mPlatform.data();
  else
    qputenv("QT_QPA_PLATFORM", mPlatform);
  return true;
}

void Framebuffer::Blacken() const {
  if (mDevice.isEmpty()) return;
  const int file = open(mDevice.constData(), O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  fb_fix_screeninfo screen{};
  if (ioctl(file, FBIOGET_FSCREENINFO, &screen) == 0) {
    void* const pixels = mmap(nullptr, screen.smem_len, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (pixels != MAP_FAILED) {
      std::memset(pixels, 0, screen.smem_len);
      munmap(pixels, screen.smem_len);
    }
  }
  close(file);
}
