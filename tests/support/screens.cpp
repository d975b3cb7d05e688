// SPDX-License-Identifier: GPL-3.0-or-later
#include "screens.h"

#include <QDir>
#include <QImage>
#include <QString>

QRect ColourBounds(const QImage &image, QRgb colour)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == colour)
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

bool SaveScreenshot(const QImage &image, const QString &name)
{
    const QString dir = QStringLiteral(SCREENS_DIR);
    return QDir().mkpath(dir) && image.save(dir + u'/' + name);
}
