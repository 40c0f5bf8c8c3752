#include "recorder/device/cameras.h"

namespace recorder {

void Cameras::Start() {
  mPowered = true;
  Follow();
}

void Cameras::Follow() {
  const int view = mHub.settings.Get(Set_Cfg_Display);
  mVideo.view = view == 0 ? VideoPlane::View::Pip : view == 2 ? VideoPlane::View::Rear : VideoPlane::View::Front;
  mVideo.mirrored = mHub.settings.Get(Set_Cfg_Mirroring) != 0;
  const int corner = mHub.settings.Get(Set_Cfg_MovingPip);
  mVideo.pipCorner = corner >= 0 && corner <= 3 ? corner : 0;
  Changed();
}

void Cameras::Show(VideoPlane::View view) {
  mVideo.view = view;
  mHub.settings.Set(Set_Cfg_Display, static_cast<int>(view));
  Changed();
}

void Cameras::SetMirrored(bool mirrored) {
  mVideo.mirrored = mirrored;
  mHub.settings.Set(Set_Cfg_Mirroring, mirrored);
  Changed();
}

void Cameras::SetPipCorner(int corner) {
  mVideo.pipCorner = corner;
  mHub.settings.Set(Set_Cfg_MovingPip, corner);
  Changed();
}

void Cameras::SetRearPower(bool on) {
  mPowered = on;
  mHub.settings.Set(Set_Cfg_RearCamPower, on);
  Changed();
}

void Cameras::Parked(bool parked) {
  mPowered = !parked || mHub.settings.Get(Set_Cfg_RearCamPower) != 0;
  Changed();
}

void Cameras::SetPlugged(bool plugged) {
  mPlugged = plugged;
  Changed();
}

bool Cameras::PlugRear(bool plugged) {
  SetPlugged(plugged);
  return mHub.sink.Send(plugged ? RECV_ZEL_STATUS_REARCAM_CONNECT : RECV_ZEL_STATUS_REARCAM_DISCONNECT);
}

QJsonObject Cameras::State() const {
  return {{QStringLiteral("view"), static_cast<int>(mVideo.view)},
          {QStringLiteral("mirrored"), mVideo.mirrored},
          {QStringLiteral("pipCorner"), mVideo.pipCorner},
          {QStringLiteral("rearPlugged"), mPlugged},
          {QStringLiteral("rearPowered"), mPowered}};
}

void Cameras::Changed() {
  mVideo.rearAlive = mPlugged && mPowered;
  emit mHub.sink.VideoChanged();
}

}  // namespace recorder
