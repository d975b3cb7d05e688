// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <utility>

// The program's own small text files: UTF-8 lines of "key=value". Keys are
// letters, digits, '.', '_' and '-'; in values a backslash, a line feed and a
// carriage return are written as \\, \n and \r, so every value stays on its
// line. Lines starting with '#' are comments.
namespace keyvalue {

using Pairs = QList<std::pair<QString, QString>>;

// The pairs of a file in their order; a key given twice keeps its last value
// in the place of its first. Lines that are no such pair (damaged, not UTF-8,
// a bad key or escape) are left out.
Pairs Parse(QByteArrayView text);
// The number of the first line (from 1) that is neither a pair, a comment
// nor blank, for files whose damage is to be told; 0 when there is none.
qsizetype FirstBadLine(QByteArrayView text);
// The file for the pairs, a comment line first when one is given.
QByteArray Format(const Pairs &pairs, const QString &comment = QString());

bool IsValidKey(const QString &key);
// The value of key, or nullptr.
const QString *Find(const Pairs &pairs, const QString &key);
// Sets key to value, adding it at the end when it is new.
void Set(Pairs &pairs, const QString &key, const QString &value);

} // namespace keyvalue
