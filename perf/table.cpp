#include "perf/table.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cmath>

namespace {
QString Number(double value, int digits = 2) {
  return QString::number(value, 'f', digits);
}

QString GoalText(const Goal& goal, const QString& unit) {
  switch (goal.kind) {
    case Goal::Times:
      return QStringLiteral("<= %1 x").arg(Number(goal.limit));
    case Goal::Above:
      return QStringLiteral("<= +%1 %2").arg(Number(goal.limit, 0), unit);
    case Goal::Most:
      return QStringLiteral("<= %1").arg(Number(goal.limit));
    case Goal::Exactly:
      return QStringLiteral("= %1").arg(Number(goal.limit, 0));
    case Goal::None:
      break;
  }
  return {};
}
}  // namespace

double Part(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const double rank = std::ceil(part * double(values.size()));
  return values[size_t(std::max(rank, 1.0)) - 1];
}

double Rounds::Ratio(double part) const {
  std::vector<double> ratios;
  for (size_t i = 0; i < std::min(floor.size(), value.size()); ++i)
    ratios.push_back(floor[i] == value[i] ? 1 : value[i] / floor[i]);
  return Part(ratios, part);
}

double Rounds::Above() const {
  std::vector<double> differences;
  for (size_t i = 0; i < std::min(floor.size(), value.size()); ++i) differences.push_back(value[i] - floor[i]);
  return Median(differences);
}

void Table::Add(const char* key, const QString& name, const char* unit, const Rounds& rounds, Goal goal,
                const QString& remark) {
  mRows.push_back({QLatin1String(key), name, QLatin1String(unit), rounds, goal, remark});
  QTextStream(stderr) << mRows.back().Text() << '\n';
}

bool Table::Row::IsMet() const {
  switch (goal.kind) {
    case Goal::Times:
      return rounds.Ratio() <= goal.limit;
    case Goal::Above:
      return rounds.Above() <= goal.limit;
    case Goal::Most:
      return Median(rounds.value) <= goal.limit;
    case Goal::Exactly:
      return Median(rounds.value) == goal.limit;
    case Goal::None:
      break;
  }
  return true;
}

double Table::Row::Figure() const {
  return rounds.floor.empty() ? Median(rounds.value) : rounds.Ratio();
}

QString Table::Row::Text() const {
  const bool hasFloor = !rounds.floor.empty();
  QString line = QStringLiteral("%1 %2 %3 %4")
                     .arg(name, -48)
                     .arg(hasFloor ? Number(Median(rounds.floor)) : QString(), 10)
                     .arg(Number(Median(rounds.value)), 10)
                     .arg(unit, -6);
  const QString spread = rounds.floor.size() < 2
                             ? QString()
                             : Number(rounds.Ratio(0.25)) + QStringLiteral(" .. ") + Number(rounds.Ratio(0.75));
  line += QStringLiteral(" %1  %2")
              .arg(hasFloor ? Number(rounds.Ratio()) + QStringLiteral(" x") : QString(), 8)
              .arg(spread, -14);
  line += QStringLiteral(" %1 %2  %3").arg(GoalText(goal, unit), -11).arg(IsMet() ? "" : "MISSED", -6).arg(remark);
  while (line.endsWith(u' ')) line.chop(1);
  return line;
}

void Table::Print(const char* floor, const char* value) const {
  QTextStream out(stdout);
  out << QStringLiteral("%1 %2 %3 unit     ratio  quartiles   goal\n")
             .arg(QString(), -48)
             .arg(QLatin1String(floor), 10)
             .arg(QLatin1String(value), 10);
  for (const Row& row : mRows) out << row.Text() << '\n';
}

bool Table::Write(const QString& file) const {
  QJsonObject all;
  for (const Row& row : mRows) {
    QJsonObject one{{"name", row.name}, {"value", Median(row.rounds.value)}, {"unit", row.unit}};
    if (!row.rounds.floor.empty()) {
      one.insert("floor", Median(row.rounds.floor));
      one.insert("ratio", row.rounds.Ratio());
      one.insert("low", row.rounds.Ratio(0.25));
      one.insert("high", row.rounds.Ratio(0.75));
    }
    if (row.goal.kind != Goal::None) {
      one.insert("goal", GoalText(row.goal, row.unit));
      one.insert("met", row.IsMet());
    }
    all.insert(row.key, one);
  }
  QFile json(file);
  return json.open(QIODevice::WriteOnly) && json.write(QJsonDocument(all).toJson()) > 0;
}

bool Table::Keep(const QString& history, const QString& commit) const {
  QString header = QStringLiteral("date,commit");
  QString line = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd,")) + commit;
  for (const Row& row : mRows) {
    header += u',' + row.key;
    line += u',' + Number(row.Figure(), 3);
  }
  QFile file(history);
  if (!file.open(QIODevice::ReadWrite | QIODevice::Text)) return false;
  QString last;
  for (const QByteArray& known : file.readAll().split('\n'))
    if (known.startsWith("date,")) last = QString::fromUtf8(known);
  QTextStream out(&file);
  if (last != header) out << header << '\n';
  out << line << '\n';
  return out.status() == QTextStream::Ok;
}
