#pragma once

#include <cstdint>

#include "gui/screen/tilescreen.h"

class QLabel;

/// Shares of the card, percent: multiples of 10.
struct FileManagement_Config {
  std::uint8_t ucEvtFileSize;
  std::uint8_t ucNormalFileSize;
  std::uint8_t ucParkingFileSize;
};

/// How the card is shared between event, normal and parking recordings: one bar with two boundaries, moved in steps of
/// 10 %. GUI thread.
class FileManagement : public TileScreen {
  Q_OBJECT

public:
  enum FM_MODE {
    FM_MODE_EVT_N_PARK = 0,
    FM_MODE_EVT_N = 1,   ///< no parkings are recorded
    FM_MODE_PARK_N = 2,  ///< no impacts while driving are recorded
    FM_MODE_NUM = 3,
  };

  explicit FileManagement(QWidget* parent);

  /// True when the shares suit the mode: each share at least 10, 100 together.
  static bool CheckSizeSetCondition(FM_MODE mode, int event, int normal, int parking);
  static FileManagement_Config SetDefaultSizeSet(FM_MODE mode);

protected:
  void FillPage(Page& page) override;
  void TouchPage(int x, int y) override;
  QList<TouchArea> PageAreas() const override;

private:
  enum Boundary { EventNormal = 0, NormalParking = 1 };

  void InitData2();
  bool FM_ModeSet();
  void InitLabel();
  void UpdateLabel();
  void ProcessBtn(bool isPlus);
  bool IsOffered(Boundary boundary) const;
  int PositionOf(Boundary boundary) const;
  QRect HandleArea(Boundary boundary) const;
  void AddBar(Page& page) const;
  void AddHandle(Page& page, Boundary boundary) const;

  bool bParkingOff = false;
  bool bGSensorOff = false;
  FM_MODE eFM_Mode = FM_MODE_NUM;  // FM_MODE_NUM: there is nothing to share
  int nCurCtrlIdx = EventNormal;
  FileManagement_Config stConfig{};
  QLabel* lblEvtNum = nullptr;
  QLabel* lblNormalNum = nullptr;
  QLabel* lblParkNum = nullptr;
};
