#pragma once

class QWidget;

/// Adds "FW Ver.1.2.3", from the settings, to the header of a main menu.
void AddFirmwareVersion(QWidget* screen);
