#pragma once

/// The paths of the camera that the bench plays, below the root.
namespace device {
inline constexpr char kTouchDevice[] = "/dev/input/event0";
inline constexpr char kBacklight[] = "/proc/pwm/pwm0";
inline constexpr char kDropCaches[] = "/proc/sys/vm/drop_caches";
inline constexpr char kClock[] = "/run/clock";      // seconds that the device's clock is ahead
inline constexpr char kPanel[] = "/run/panel";      // how the touch panel is mounted
inline constexpr char kGallery[] = "/run/gallery";  // the pictures of every screen, once somebody has asked for them
inline constexpr char kClickSound[] = "/opt/ipnc/voice/touch.wav";
}  // namespace device
