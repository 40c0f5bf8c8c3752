#pragma once

class MainWindow;

/// Before the application object: one point is one pixel, no scaling, and Qt's own input and cursor stay off.
void PrepareQt();

/// After GetConfig(): the configured font family for everything, and what stands in for it where it is not installed.
void ApplyFont();

/// The command line: argument 2 "1" or "0" asks for voltage compensation or not. Argument 3 is read, but a parked
/// recorder says so itself: parking mode always starts off. Argument 1 is nobody's.
void SetInit(int argc, char** argv, MainWindow* window);
