#pragma once

class MainWindow;

/// "--touch PATH", the touch panel's device, and "--language NAME", wherever they stand. They are taken out of the
/// arguments, which then are the positional ones and Qt's. False, with one sentence on the standard error, when one
/// lacks its value.
bool TakeOptions(int* argc, char** argv);

/// After the application object: the language of --language, else of the environment's DASHCAM_LANGUAGE, else Korean.
/// One that there is not is one line on the standard error, and Korean.
void ApplyLanguage();

/// Before the application object: one point is one pixel, no scaling, and Qt's own input and cursor stay off.
void PrepareQt();

/// After GetConfig(): the configured font family for everything, and what stands in for it where it is not installed.
void ApplyFont();

/// The command line: argument 2 "1" or "0" asks for voltage compensation or not. Argument 3 is read, but a parked
/// recorder says so itself: parking mode always starts off. Argument 1 is nobody's.
void SetInit(int argc, char** argv, MainWindow* window);
