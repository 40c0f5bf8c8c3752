#pragma once

#include <array>

#include "gui/led/ledfilemanager.h"
#include "gui/screen/pagedlist.h"

class LedFileItem;

/// The list of the LED's patterns: ticks say which are shown, or which are to be deleted. The security pattern is shown
/// alone: while it is ticked, nothing else can be. GUI thread.
class LedFileList : public PagedList {
  Q_OBJECT

public:
  explicit LedFileList(QWidget* parent);

  void touchEvent(int type, int x, int y) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;
  void ShowPage() override;

private:
  struct Key;
  static const Key kKeys[];

  void SetListItem();
  static QRect CheckBoxArea(int row);
  int ItemIn(int row) const;  // its index in the list; -1: there is none to tick
  void SetCheckBox(int row);
  void CountCheckBoxes();
  void PressHome() { EntryPreview(); }
  void PressBack() { Back(); }
  void PressDelete();
  void PressSave();
  void Write(bool deletion);

  std::array<LedFileItem*, kRows> mFileItemWidget;
  QList<Led_File_Item>* mCurFileItem;  // the manager's
  int mCheckBoxCount = 0;              // ticked rows of the whole list
};
