#pragma once

#include <QString>
#include <vector>

/// The value below which `part` (0..1) of the values are; 0 of none.
double Part(std::vector<double> values, double part);
inline double Median(const std::vector<double>& values) {
  return Part(values, 0.5);
}

/// What was measured in rounds, the floor and the interface in turn. Without a floor only the interface.
struct Rounds {
  std::vector<double> floor;
  std::vector<double> value;

  /// Of the rounds' ratios, each of one round's value to its floor.
  double Ratio(double part = 0.5) const;
  /// By how much the value is above the floor, median.
  double Above() const;
};

/// What a row is to reach. `Times`: a multiple of the floor at most; `Above`: so much above it at most; `Most`: a
/// value; `Exactly`: this value.
struct Goal {
  enum Kind { None, Times, Above, Most, Exactly } kind = None;
  double limit = 0;
};

/// The rows, in the order in which they were measured: medians of the rounds, the median of the rounds' ratios and its
/// spread, the quartiles of these.
class Table {
public:
  /// `key` is the row's name in files.
  void Add(const char* key, const QString& name, const char* unit, const Rounds& rounds, Goal goal = {},
           const QString& remark = {});
  void AddValue(const char* key, const QString& name, const char* unit, double value, Goal goal = {},
                const QString& remark = {}) {
    Add(key, name, unit, {{}, {value}}, goal, remark);
  }

  /// `floor`, `value`: what the two columns are.
  void Print(const char* floor, const char* value) const;
  bool Write(const QString& file) const;
  /// Appends a line to a table of commits: the date, the commit, of each row its ratio, or its value when it has no
  /// floor. When the table's last header has other rows, the line has a header of its own.
  bool Keep(const QString& history, const QString& commit) const;

private:
  struct Row {
    QString key, name, unit;
    Rounds rounds;
    Goal goal;
    QString remark;

    bool IsMet() const;
    double Figure() const;
    QString Text() const;
  };
  std::vector<Row> mRows;
};
