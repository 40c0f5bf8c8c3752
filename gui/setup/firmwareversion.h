#pragma once

#include <QString>

class QLabel;
class QWidget;

/// "FW Ver.1.2.3", from the settings.
QString FirmwareVersion();

/// The version in the header of a main menu.
QLabel* AddFirmwareVersion(QWidget* screen);
