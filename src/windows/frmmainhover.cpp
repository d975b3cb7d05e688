// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmmain.h"

#include "core/programstate.h"
#include "drawing/r_renderer.h"
#include "settings/r_data.h"
#include "windows/modrender.h"

#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// The study window's hover help: the card's bottom-left line says what the
// control under the mouse does, and returns to the idle text a while after
// the mouse has left.

namespace {
const QString kIdleHelp = u"Roll mouse over controls to see descriptions"_s;
} // namespace

const QStringList &frmMain::HoverHelpTexts()
{
    static const QStringList texts {
            u"Sets whether you had trouble with this card or not"_s,
            u"Toggles whether or not to show only trouble cards"_s,
            u"Show Menu"_s,
            u"Next Card"_s,
            u"Previous Card"_s,
            u"Toggle Question and Answer"_s,
            kIdleHelp,
    };
    return texts;
}

void frmMain::StartHoverTimer()
{
    if (!g_ShowMouseHover)
        return;
    Timer1->start(2000);
}

void frmMain::StopHoverTimer()
{
    Timer1->stop();
    Timer1->setInterval(0);
}

void frmMain::ShowHoverHelp(const QString &text)
{
    r_data *metrics = modrender::Metrics();
    if (!g_ShowMouseHover || !metrics || g_ShuffleRunning)
        return;
    metrics->SetCornerText(r_data::Corner::BottomLeft, text);
    if (r_renderer *renderer = modrender::Renderer())
        renderer->Draw(true);
    StopHoverTimer();
}

void frmMain::HoverTick()
{
    if (!g_ShowMouseHover)
        return;
    r_data *metrics = modrender::Metrics();
    if (!metrics || g_ShuffleRunning) {
        StopHoverTimer();
        return;
    }
    if (metrics->CornerText(r_data::Corner::BottomLeft) != kIdleHelp) {
        metrics->SetCornerText(r_data::Corner::BottomLeft, kIdleHelp, 5);
        if (r_renderer *renderer = modrender::Renderer())
            renderer->Draw(true);
    }
}
