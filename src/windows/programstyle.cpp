// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/programstyle.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

// The pictures Qt's common style uses for a tool bar's overflow button, read
// from its resources as the PNG they are. Every tool bar asks for them when it
// is made, yet few ever overflow: reading them waits for the first paint, as
// the image reader looks through the image plugins on its first use.
class ExtensionArrows final : public QIconEngine
{
public:
    ExtensionArrows(bool horizontal, bool rightToLeft, QStyle *fallback)
        : m_horizontal(horizontal)
        , m_rightToLeft(rightToLeft)
        , m_fallback(fallback)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }

    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return icon().availableSizes(mode, state);
    }

    QIconEngine *clone() const override
    {
        return new ExtensionArrows(m_horizontal, m_rightToLeft, m_fallback);
    }

    bool isNull() override { return icon().isNull(); }

private:
    // Should a Qt lack the pictures, the base style's arrow is shown.
    const QIcon &icon()
    {
        if (m_read)
            return m_icon;
        m_read = true;
        const QString stem = u":/qt-project.org/styles/commonstyle/images/toolbar-ext-"_s;
        const QStringList names = m_horizontal ? QStringList {u"h-8"_s, u"h-16"_s, u"h-32"_s}
                                               : QStringList {u"v-5"_s, u"v-10"_s, u"v-20"_s};
        QIcon read;
        for (QString name : names) {
            if (m_horizontal && m_rightToLeft)
                name.insert(1, u"-rtl"_s);
            QImageReader reader(stem + name + u".png"_s, "png");
            reader.setAutoDetectImageFormat(false);
            const QImage image = reader.read();
            if (image.isNull()) {
                if (m_fallback)
                    m_icon = m_fallback->standardIcon(
                            m_horizontal ? QStyle::SP_ToolBarHorizontalExtensionButton
                                         : QStyle::SP_ToolBarVerticalExtensionButton);
                return m_icon;
            }
            read.addPixmap(QPixmap::fromImage(image));
        }
        m_icon = read;
        return m_icon;
    }

    bool m_horizontal;
    bool m_rightToLeft;
    QPointer<QStyle> m_fallback;
    bool m_read = false;
    QIcon m_icon;
};

class ProgramStyle final : public QProxyStyle
{
public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        if (which == SP_ToolBarHorizontalExtensionButton
            || which == SP_ToolBarVerticalExtensionButton)
            return QIcon(new ExtensionArrows(which == SP_ToolBarHorizontalExtensionButton,
                                             option ? option->direction == Qt::RightToLeft
                                                    : QGuiApplication::isRightToLeft(),
                                             baseStyle()));
        return QProxyStyle::standardIcon(which, option, widget);
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
