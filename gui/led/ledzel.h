#pragma once

#include <cstddef>
#include <cstdint>

/// The list of the front LED in memory. The file has the same fields in another order, little-endian without gaps:
///   Number, Size, Mode; and for each entry Checked, NickName, IdfCount, IdfName, RealSize, IdfData.

/// One pattern.
struct [[gnu::packed]] LED_IDF {
  std::uint8_t Checked;       ///< 1: shown on the LED
  std::uint8_t NickName[20];  ///< EUC-KR, padded with zeros; a full one has no zero
  std::uint16_t RealSize;     ///< bytes used in IdfData
  std::uint16_t IdfCount;     ///< bytes used in IdfName
  std::uint8_t IdfName[65];   ///< glyph codes, each followed by '$'
  std::uint8_t IdfData[65];   ///< columns, four for each glyph; bit 0 is the top row
};
static_assert(sizeof(LED_IDF) == 155);
static_assert(offsetof(LED_IDF, NickName) == 1 && offsetof(LED_IDF, RealSize) == 21);
static_assert(offsetof(LED_IDF, IdfCount) == 23 && offsetof(LED_IDF, IdfName) == 25);
static_assert(offsetof(LED_IDF, IdfData) == 90);

inline constexpr int kMostLedEntries = 20;

struct [[gnu::packed]] LED_ZEL {
  std::uint8_t Number;  ///< of entries, 0..20
  std::uint16_t Size;   ///< the firmware's; kept as it is
  std::uint8_t Mode;    ///< 0 basic, 1 sequential, 2 random
  LED_IDF Led_idf[kMostLedEntries];
};
static_assert(sizeof(LED_ZEL) == 3104);
static_assert(offsetof(LED_ZEL, Size) == 1 && offsetof(LED_ZEL, Mode) == 3 && offsetof(LED_ZEL, Led_idf) == 4);

/// Glyph codes.
enum IDF_ICON { IDF_0 = 0, IDF_9 = 9, IDF_A = 10, IDF_Z = 35, IDF_BLANK = 36, IDF_BAR = 37, IDF_SYMBOL04 = 40 };
