// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/programstyle.h"

#include <QPalette>
#include <QWidget>

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

} // namespace programstyle
