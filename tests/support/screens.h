// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QRgb>

class QImage;
class QString;

// What the tests of pictures share.

// A colour as the program stores it (0x00BBGGRR) as an image pixel.
inline QRgb rgb(quint32 ole)
{
    return qRgb(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF));
}

// The largest difference of the two colours in any channel.
inline int distance(QRgb a, QRgb b)
{
    return qMax(qAbs(qRed(a) - qRed(b)), qMax(qAbs(qGreen(a) - qGreen(b)), qAbs(qBlue(a) - qBlue(b))));
}

// Where the picture has pixels of exactly this colour; empty when nowhere.
QRect ColourBounds(const QImage &image, QRgb colour);
inline bool HasColour(const QImage &image, QRgb colour)
{
    return !ColourBounds(image, colour).isEmpty();
}

// Saves a picture of a real window for people to look at (build/…/screens/);
// false when it could not be written.
bool SaveScreenshot(const QImage &image, const QString &name);
