// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/zelcontrol.h"

// A check box: a square box at the left edge as high as the control, a cross
// in it when checked, and the caption to its right.
class zelCheck : public zelControl
{
    Q_OBJECT

public:
    explicit zelCheck(QWidget *parent = nullptr);

    bool Checked() const { return m_checked; }
    void SetChecked(bool checked);

    void InitProperties() override;
    void ReadProperties(const PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) const override;

protected:
    void Paint(cMemDC &dc, const QRect &client) override;
    void OnClick() override;

private:
    void DrawCross(cMemDC &dc, int boxLeft, int boxTop, int boxRight, int boxBottom, quint32 color);

    bool m_checked = false;
};
