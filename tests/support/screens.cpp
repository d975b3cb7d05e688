#include "screens.h"

#include <QDir>
#include <QImage>
#include <QString>

bool SaveScreenshot(const QImage &image, const QString &name)
{
    const QString dir = QStringLiteral(SCREENS_DIR);
    return QDir().mkpath(dir) && image.save(dir + u'/' + name);
}
