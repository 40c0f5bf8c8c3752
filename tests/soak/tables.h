#pragma once

#include <QPoint>

/// What the monkey plays with, as data.
namespace soak {

/// Keys, tiles, rows, scroll keys and the buttons of boxes.
inline constexpr QPoint kWanted[] = {
    {40, 33},   {115, 33},  {190, 33},  {265, 33},  {355, 33},  {440, 33},  {40, 96},   {115, 96},  {80, 125},
    {240, 125}, {400, 125}, {80, 255},  {240, 255}, {400, 255}, {440, 86},  {440, 138}, {440, 242}, {440, 294},
    {200, 86},  {200, 190}, {370, 86},  {370, 138}, {140, 236}, {340, 236}, {240, 283}, {150, 288}, {310, 288},
    {40, 291},  {120, 291}, {200, 291}, {280, 291}, {360, 291}, {440, 291}, {440, 99},  {240, 230}};

/// Ways from the live preview that are rarely found by chance: "x,y" is a tap, "=name" or "=name:argument:value" an
/// action, "~" a pause of two seconds.
inline constexpr const char* kWalks[] = {
    "265,33 80,125 140,236 ~ 200,86 ~ 240,230 200,291 440,291 280,291",        // a recording is played
    "265,33 80,125 140,236 ~ 200,138 ~ 40,291 40,33",                          // ... and left for the menu
    "265,33 80,125 140,236 ~ 150,30 265,30 355,30 440,294 200,190 ~ 120,291",  // ... and for the preview
    "265,33 400,125 80,125 140,236 ~ ~ ~",                                     // the card is formatted
    "265,33 400,125 240,125 140,236 ~ ~ ~",                                    // ... checked
    "=sdFormatFails 265,33 400,125 80,125 140,236 ~ ~ ~",                      // the format fails
    "=sdError:code:5 140,236 ~ ~",                                             // an error asks for one
    "265,33 80,255 80,125 240,125 400,125 40,30 140,236 ~ ~ ~",                // other pictures need one, too
    "265,33 80,255 80,255 240,255 400,255 40,30 ~",                            // driving
    "265,33 240,255 80,125 240,125 400,125 400,255 40,30 ~",                   // parking
    "265,33 240,255 240,255 140,236 400,30 200,200 =powerKey 140,236 ~",       // areas of movement
    "265,33 240,255 240,255 340,236 300,100 =powerKey 340,236 140,236 ~",      // ... of the other camera, and no
    "265,33 240,255 80,255 80,125 240,125 40,30 ~",                            // cutting the power
    "265,33 240,125 80,125 240,125 160,273 40,30 ~",                           // which recordings make room
    "265,33 400,255 80,125 80,125 240,125 400,125 80,255 40,30 ~",             // the LCD
    "265,33 400,255 240,125 240,125 370,86 370,138 355,30 140,236 ~ 40,30 ~",  // the front LED's patterns
    "265,33 400,255 240,125 80,125 40,180 120,180 440,99 140,236 ~ 40,30 ~",   // ... a number
    "265,33 400,255 400,125 310,288 310,288 355,30 140,236 ~ ~",               // the clock is set
    "265,33 400,255 240,255 80,125 240,125 400,125 80,255 40,30 ~",            // sounds
    "265,33 400,255 80,255 40,35 440,35 40,285 =powerKey =powerKey",           // calibration is left
    "265,33 400,255 400,255 340,236 40,30",                                    // no factory settings
    "=parkIn =impact =motion ~ =parkOut ~ 240,283",                            // a parking and its report
    "=parkIn ~ 190,33 ~ =parkLowVoltage ~ 240,283",                            // ... that low voltage ends
    "265,33 400,255 80,125 80,125 80,125 80,125 400,125 40,30 ~ ~ ~ ~ ~ ~ ~ ~ 240,160",  // the screen saver comes
    "=powerKey ~ =mute:state:on ~ =powerKey 240,160 ~",                                  // the LCD is dark
    "40,33 115,33 40,96 40,33 115,96 ~",                                                 // the keys of the preview
    "300,200 300,200 300,200 300,200 300,200 300,200 ~",  // the hidden way to calibration
};

/// The same for ways on which the interface is ended.
inline constexpr const char* kEndings[] = {
    "265,33 80,125 140,236 ~ =interfaceKill ~",
    "265,33 400,125 80,125 140,236 ~ =interfaceKill ~",
    "265,33 80,125 140,236 ~ 200,86 ~ =interfaceRestart ~",
    "=touchMarker:file:test ~ ~ 200,200 100,100 =powerKey ~",
    "=updateMarker:file:update.zel ~ 40,35 240,35 440,35 40,160 240,160 440,160 40,285 240,285 440,285",
};

/// Files that come and go. `most`: bytes of what is written; -1: it only goes.
struct File {
  const char* path;
  int most;
};
inline constexpr File kFiles[] = {
    {"/tmp/ndf", 0},
    {"/tmp/.info.bin", 200},
    {"/tmp/picture.bmp", 200},
    {"/tmp/config_init.ini", 200},
    {"/mnt/mmc/Setup/picture.bmp", 200},
    {"/mnt/mmc/Setup/record_stop.info", 200},
    {"/mnt/mmc/Setup/.format_time", 0},
    {"/mnt/mmc/test_mode.txt", 0},
    {"/mnt/mmc/rec0_20230101_120000.avi", 2000},
    {"/mnt/mmc/rec1_20230101_120000.avi", 2000},
    {"/mnt/mmc/pmr0_20230101_120100_.avi", 20},
    {"/mnt/mmc/evt0_20991231_235959.avi", 200},
    {"/opt/led.zel", 3200},
    {"/opt/touch.zel", -1},  // one of random numbers would leave no way to touch anything
    {"/opt/touch_tuning.zel", -1},
};

/// What puts everything right again that a person would have to see to before the camera works.
inline constexpr const char* kRepairs[] = {
    R"({"name": "recorderStart"})",
    R"({"name": "commandsFail", "number": 0})",
    R"({"name": "sdIn"})",
    R"({"name": "sdCheckFinds", "fault": "0"})",
    R"({"name": "voiceEndSuppress", "state": "off"})",
    R"({"name": "voiceEndNow"})",
    R"({"name": "battery", "volts": 12.34})",
    R"({"name": "countdown", "state": "off"})",
    R"({"name": "parkOut"})",
    R"({"name": "rearPlug"})",
    R"({"name": "clock", "to": "real"})",
    R"({"name": "removeMarkers"})",
    R"({"name": "panelStraight"})",
};

/// How a person leaves a screen: a touch, or the power key. Every other one has the home key.
struct Way {
  const char* screen;
  QPoint touch;  // null: the power key
};
inline constexpr QPoint kHome{40, 30};
inline constexpr Way kWays[] = {
    {"PFILEGRAPH", {240, 283}}, {"TOUCHTEST", {}}, {"TOUCHCOMP", {}}, {"MOTIONSETTING", {}}};

}  // namespace soak
