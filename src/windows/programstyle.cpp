// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/programstyle.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

class ProgramStyle final : public QProxyStyle
{
public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        if (which == SP_ToolBarHorizontalExtensionButton
            || which == SP_ToolBarVerticalExtensionButton) {
            const QIcon icon = extensionArrows(which == SP_ToolBarHorizontalExtensionButton,
                                               option ? option->direction == Qt::RightToLeft
                                                      : QGuiApplication::isRightToLeft());
            if (!icon.isNull())
                return icon;
        }
        return QProxyStyle::standardIcon(which, option, widget);
    }

private:
    // The pictures Qt's common style uses, read as the PNG they are. Told the
    // format and not to guess, the reader asks no plugin. Should a Qt lack
    // them, the base style's icon is used.
    static QIcon extensionArrows(bool horizontal, bool rightToLeft)
    {
        const QString stem = u":/qt-project.org/styles/commonstyle/images/toolbar-ext-"_s;
        const QStringList names = horizontal ? QStringList {u"h-8"_s, u"h-16"_s, u"h-32"_s}
                                             : QStringList {u"v-5"_s, u"v-10"_s, u"v-20"_s};
        QIcon icon;
        for (QString name : names) {
            if (horizontal && rightToLeft)
                name.insert(1, u"-rtl"_s);
            QImageReader reader(stem + name + u".png"_s, "png");
            reader.setAutoDetectImageFormat(false);
            const QImage image = reader.read();
            if (image.isNull())
                return QIcon();
            icon.addPixmap(QPixmap::fromImage(image));
        }
        return icon;
    }
};

} // namespace

namespace programstyle {

void ApplyDark(QWidget *window)
{
    QPalette p = window->palette();
    const QColor base(0x12, 0x14, 0x24);
    const QColor panel(0x1B, 0x1E, 0x33);
    const QColor blue(0x49, 0x55, 0xDE);
    p.setColor(QPalette::Window, panel);
    p.setColor(QPalette::WindowText, Qt::white);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, panel);
    p.setColor(QPalette::Text, Qt::white);
    p.setColor(QPalette::Button, QColor(0x2A, 0x2F, 0x4F));
    p.setColor(QPalette::ButtonText, Qt::white);
    p.setColor(QPalette::Highlight, blue);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, panel);
    p.setColor(QPalette::ToolTipText, Qt::white);
    p.setColor(QPalette::PlaceholderText, QColor(0x9A, 0xA0, 0xC0));
    p.setColor(QPalette::Link, QColor(0x9F, 0xB0, 0xFF));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x84, 0x9C));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x84, 0x9C));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x84, 0x9C));
    window->setPalette(p);
    window->setAutoFillBackground(true);
}

void InstallApplicationStyle()
{
    QApplication::setStyle(new ProgramStyle);
}

} // namespace programstyle
