#pragma once

#include <QTranslator>

/// A language that there is not, for texts that are longer than anybody expected: the English ones, each line of them
/// 35 % longer. GUI thread.
class Stretched : public QTranslator {
public:
  Stretched();

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* disambiguation, int count) const override;

private:
  QTranslator mEnglish;
};
