#pragma once

#include <QWidget>
#include <optional>

#include "gui/led/ledfilemanager.h"

class QLabel;

/// One row of the LED list: the sign of the order, the name, the check box; plain ground when there is no item.
class LedFileItem : public QWidget {
  Q_OBJECT

public:
  explicit LedFileItem(QWidget* parent);

  /// Shows a copy of `item`; nothing when it is null. A locked row has a grey name.
  void Repaint(const Led_File_Item* item, bool locked);

  /// The name as text: the bytes are EUC-KR.
  static QString NameOf(const Led_File_Item& item);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::optional<Led_File_Item> mCurItem;
  QLabel* mNameLabel;
};
