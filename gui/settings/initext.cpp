#include "gui/settings/initext.h"

#include <algorithm>
#include <optional>

namespace {
// The name in "[name]", whatever comes behind it; none for another line.
std::optional<QByteArray> GroupOf(const QByteArray& line) {
  if (!line.startsWith('[')) return {};
  const qsizetype end = line.indexOf(']');
  return line.mid(1, end < 0 ? end : end - 1).trimmed();
}

// The name in "name=value"; null for another line, and for one that would take the next one in.
QByteArray NameOf(const QByteArray& line) {
  const qsizetype end = line.indexOf('=');
  return end > 0 && !line.endsWith('\\') && line.count('"') % 2 == 0 ? line.first(end).trimmed() : QByteArray();
}

// A group or a name that QSettings takes for another one than stands there: "vi%65w". And quotes in it would go on in
// the next line once what closes them is gone.
bool IsEncoded(const QByteArray& line) {
  const QByteArray name = line.startsWith('[') ? line : line.first(std::max<qsizetype>(line.indexOf('='), 0));
  return name.contains('"') || name.contains('%');
}

void AppendLine(QByteArray* text, const QByteArray& name, const QVariant& value) {
  text->append(name + '=' + value.toByteArray() + '\n');
}

// All values of the group, which are then no longer in the map.
void AppendGroup(QByteArray* text, const QByteArray& group, IniValues* values) {
  const QByteArray begin = group + '/';
  for (auto value = values->lowerBound(begin); value != values->end() && value.key().startsWith(begin);) {
    AppendLine(text, value.key().mid(begin.size()), *value);
    value = values->erase(value);
  }
}
}  // namespace

bool IsPlainIni(const QByteArray& text) {
  for (QByteArray line : text.split('\n')) {
    if (line.endsWith('\r')) line.chop(1);
    if (line.contains('\r')) return false;  // a note ends there, too
    if (line.trimmed().startsWith(';')) continue;
    if (IsEncoded(line.trimmed())) return false;
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
      if (line[i] == '"') isQuoted = !isQuoted;
      if (line[i] == '\\' && ++i == line.size()) return false;
    }
    if (isQuoted) return false;
  }
  return true;
}

QByteArray WithIniValues(const QByteArray& text, const IniValues& values) {
  QByteArray result;
  QByteArray group;
  IniValues left = values;
  const QList<QByteArray> lines = text.split('\n');
  for (const QByteArray& whole : lines) {
    const QByteArray line = whole.trimmed();
    if (const std::optional<QByteArray> next = GroupOf(line)) {
      AppendGroup(&result, group, &left);
      group = *next;
      result += '[' + group + "]\n";
      continue;
    }
    const QByteArray name = NameOf(line);
    const QByteArray key = group + '/' + name;
    if (line.startsWith(';') || (!name.isNull() && !values.contains(key)))
      result += line + '\n';
    else if (!name.isNull() && left.contains(key))  // of two lines the last one would count
      AppendLine(&result, name, left.take(key));
  }
  AppendGroup(&result, group, &left);
  while (!left.isEmpty()) {
    group = left.firstKey();
    group.truncate(group.indexOf('/'));
    result += '[' + group + "]\n";
    AppendGroup(&result, group, &left);
  }
  return result;
}
