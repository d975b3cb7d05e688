// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/zelcontrol.h"

class QTimer;

// A line of text that works as a link: its width follows the text, and under
// the mouse it changes colour and is underlined.
class zelHL : public zelControl
{
    Q_OBJECT

public:
    explicit zelHL(QWidget *parent = nullptr);

    void InitProperties() override;
    void ReadProperties(const PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) const override;

    // The control's own timer only repaints it; its interval is a design
    // property, 0 (off) unless set.
    QTimer *Timer1() const { return m_timer; }

protected:
    void Paint(cMemDC &dc, const QRect &client) override;
    bool RaisesHoverEvents() const override { return false; }
    int PreferredWidth() const override;
    void PropertyChanged() override { Redraw(); }

private:
    LogicalFont CaptionFont() const;

    QTimer *m_timer;
};
