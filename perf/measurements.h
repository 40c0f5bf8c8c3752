#pragma once

#include <QString>

class Stage;
class Table;

/// Each measures the interface beside its floor and adds the rows.

/// Start, memory, touches and status messages, in rounds: the bare programs, then the interface.
void MeasureAnswers(Stage& stage, Table& table);
/// The same of another interface and this one: in the table the other is the floor.
void CompareAnswers(Stage& stage, Table& table, const QString& other);
/// Wake-ups and processor time on screens that nobody touches.
void MeasureIdle(Stage& stage, Table& table);
/// The same of another interface and this one.
void CompareIdle(Stage& stage, Table& table, const QString& other);
/// What a changed option writes.
void MeasureSaving(Stage& stage, Table& table);
/// From the question's yes to the list of recordings.
void MeasureOpening(Stage& stage, Table& table);
/// Full repaints beside a copy of a frame.
void MeasurePainting(Table& table);
/// The scan of cards beside the C program.
void MeasureScan(Table& table);
