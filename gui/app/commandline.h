#pragma once

class MainWindow;

/// "--touch PATH", wherever it stands: the touch panel's device. It is taken out of the arguments, which then are the
/// positional ones and Qt's. False, with one sentence on the standard error, without its path.
bool TakeTouchOption(int* argc, char** argv);

/// Before the application object: one point is one pixel, no scaling, and Qt's own input and cursor stay off.
void PrepareQt();

/// After GetConfig(): the configured font family for everything, and what stands in for it where it is not installed.
void ApplyFont();

/// The command line: argument 2 "1" or "0" asks for voltage compensation or not. Argument 3 is read, but a parked
/// recorder says so itself: parking mode always starts off. Argument 1 is nobody's.
void SetInit(int argc, char** argv, MainWindow* window);
