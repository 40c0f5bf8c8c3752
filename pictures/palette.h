#pragma once

#include <QColor>

/// Every colour of the pictures; nothing else is used.
namespace palette {
// Night pages: menus, lists, boxes, everything over video.
inline constexpr QColor kBg(38, 34, 35);  // page, gaps
inline constexpr QColor kWell(20, 17, 18);
inline constexpr QColor kSurface(61, 56, 58);
inline constexpr QColor kRaised(88, 81, 84);
inline constexpr QColor kLine(110, 103, 106);
inline constexpr QColor kDis(48, 44, 45);  // ground of what is disabled
inline constexpr QColor kText(255, 255, 255);
inline constexpr QColor kText2(200, 194, 196);
inline constexpr QColor kTextDis(122, 115, 118);
inline constexpr QColor kAccent(64, 200, 224);
inline constexpr QColor kDeep(0, 92, 110);   // the accent's dark form
inline constexpr QColor kBlack(12, 10, 11);  // on accent and warning
inline constexpr QColor kWarn(255, 184, 28);
inline constexpr QColor kDanger(240, 92, 84);

// The kinds of recording, everywhere.
inline constexpr QColor kEvent(240, 124, 92);
inline constexpr QColor kNormal(190, 198, 202);
inline constexpr QColor kParking(104, 160, 245);

// Report pages: calibration, parking report, clock plate.
inline constexpr QColor kDial(200, 206, 210);
inline constexpr QColor kPaper(224, 228, 230);
inline constexpr QColor kPanel(248, 249, 250);
inline constexpr QColor kPaperLine(140, 146, 150);
inline constexpr QColor kInk(0, 0, 0);
inline constexpr QColor kEventInk(196, 36, 44);
}  // namespace palette
