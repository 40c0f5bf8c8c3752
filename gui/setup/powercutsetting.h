#pragma once

#include <array>
#include <span>

#include "gui/screen/tilescreen.h"

/// The voltages below which the camera cuts itself off while parked: the recommended ones, or one of the driver's own
/// for each of the twelve levels. GUI thread.
class PowerCutSetting : public TileScreen {
  Q_OBJECT

public:
  static constexpr int kLevels = 12;

  explicit PowerCutSetting(QWidget* parent);

protected:
  void FillPage(Page& page) override;
  void TouchPage(int x, int y) override;
  QList<TouchArea> PageAreas() const override;

private:
  static QRect CellRect(int level);
  static std::span<const float> Volts();

  void InitIndex();
  void SetDefaultVolIndex();
  void SetVolImagePath(int level);
  void SetVolImagePaths();
  void UpdateValue(int level);
  void PressLevel(int level);
  void SetManual(bool manual);

  std::array<QString, kLevels> mVolImage;
  std::array<int, kLevels> mVolValueIndex{};  // in the table of the battery's type
  bool mRecommendFlag;
};
