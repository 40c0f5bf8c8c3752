#pragma once

#include <QJsonObject>

class QUrl;

/// The query of a URL as members: digits are a number, everything else is a text. False: a name is there twice.
bool ReadQuery(const QUrl& url, QJsonObject* members);
