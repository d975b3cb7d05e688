// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/chapterformat.h"

using namespace Qt::Literals::StringLiterals;

void ReplaceUmlautEscapes(QString &text)
{
    static const struct
    {
        QString escape;
        QChar character;
    } kEscapes[] = {
            {u"asc(252)"_s, QChar(0xFC)}, {u"asc(246)"_s, QChar(0xF6)},
            {u"asc(228)"_s, QChar(0xE4)}, {u"asc(223)"_s, QChar(0xDF)},
            {u"asc(220)"_s, QChar(0xDC)}, {u"asc(214)"_s, QChar(0xD6)},
            {u"asc(196)"_s, QChar(0xC4)},
    };
    if (!text.contains(u"asc("_s))
        return;
    for (const auto &e : kEscapes)
        text.replace(e.escape, QString(e.character));
}
