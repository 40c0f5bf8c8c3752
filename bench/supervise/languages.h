#pragma once

#include <QString>
#include <span>

/// The languages that the interface of this build speaks, by their codes. Korean is the first.
namespace languages {

std::span<const char* const> All();
bool Has(const QString& language);

/// "ko, en", for a sentence.
QString Names();

/// The one that nobody has asked for: the environment's DASHCAM_LANGUAGE when it is one of them, else the first.
QString Usual();

}  // namespace languages
