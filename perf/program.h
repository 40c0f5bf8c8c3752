#pragma once

#include <QProcess>

/// A program that is measured. It ends with the object.
class Program {
public:
  Program(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment);
  ~Program();

  qint64 Id() const { return mProcess.processId(); }
  /// KiB: resident, and private to it and written.
  double Resident() const;
  double PrivateDirty() const;
  /// Of all its threads: nanoseconds of processor time, and how often one of them has gone to sleep.
  double ProcessorTime() const;
  double Sleeps() const;

private:
  QByteArray Proc(const char* name) const;
  double SumOfThreads(const char* name, double (*figure)(const QByteArray&)) const;

  QProcess mProcess;
};
