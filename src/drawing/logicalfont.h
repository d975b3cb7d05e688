// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

// A font as the drawing code describes it: a face, a size in points and its
// styles. Sizes become pixel heights through a logical resolution of 96 dots
// per inch, so text measures the same on every screen.
struct LogicalFont
{
    QString name = QStringLiteral("Tahoma");
    double size = 8.0;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
    int weight = 400;

    static constexpr int kLogicalDpi = 96;

    // Pixel height of the em: size x 96 / 72, rounded to nearest.
    int pixelHeight() const;
    // The face, followed by the faces that stand in for a character it lacks
    // (see FallbackFaces), so a card in any script shows its letters.
    QFont toQFont() const;
    static LogicalFont fromQFont(const QFont &font);
};

// "Tahoma" is the program's face; where a machine lacks it, the system's sans
// face stands in (fontconfig's choice, else DejaVu Sans, which the install
// script brings).
void InstallFontSubstitutes();

// Faces asked, in this order, for a character that a font's own face has no
// glyph for, before the system's own choice: wide sans faces for Latin,
// Greek and Cyrillic first (DejaVu Sans comes with the install script), then
// faces for Chinese, Japanese and Korean.
const QStringList &FallbackFaces();
