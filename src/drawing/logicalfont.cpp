// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/logicalfont.h"

#include <QFontDatabase>
#include <QStringList>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

int LogicalFont::pixelHeight() const
{
    return int(std::lround(size * kLogicalDpi / 72.0));
}

QFont LogicalFont::toQFont() const
{
    QFont f(name);
    f.setFamilies(QStringList {name} + FallbackFaces());
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(qMax(1, pixelHeight()));
    f.setBold(bold);
    if (!bold && weight != 400)
        f.setWeight(weight >= 600 ? QFont::DemiBold : QFont::Normal);
    f.setItalic(italic);
    f.setUnderline(underline);
    f.setStrikeOut(strikethrough);
    return f;
}

LogicalFont LogicalFont::fromQFont(const QFont &font)
{
    LogicalFont s;
    s.name = font.family();
    if (font.pixelSize() > 0)
        s.size = font.pixelSize() * 72.0 / kLogicalDpi;
    else if (font.pointSizeF() > 0)
        s.size = font.pointSizeF();
    s.bold = font.bold();
    s.weight = font.bold() ? 700 : 400;
    s.italic = font.italic();
    s.underline = font.underline();
    s.strikethrough = font.strikeOut();
    return s;
}

const QStringList &FallbackFaces()
{
    static const QStringList faces {
            u"DejaVu Sans"_s,      u"Noto Sans"_s,           u"Liberation Sans"_s,
            u"Noto Sans CJK JP"_s, u"Droid Sans Fallback"_s,
    };
    return faces;
}

void InstallFontSubstitutes()
{
    const QString tahoma = u"Tahoma"_s;
    if (QFontDatabase::families().contains(tahoma, Qt::CaseInsensitive))
        return;
    const QStringList sans {u"DejaVu Sans"_s, u"Liberation Sans"_s, u"Noto Sans"_s,
                            QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()};
    QFont::insertSubstitutions(tahoma, sans);
}
