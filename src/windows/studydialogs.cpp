// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/studydialogs.h"

#include "windows/frmfind.h"
#include "windows/frmoptions.h"
#include "windows/frmviewer.h"

namespace studydialogs {

void ShowOptions()
{
    frmOptions *options = frmOptions::Instance();
    options->show();
    options->raise();
    options->activateWindow();
}

void ShowFind()
{
    frmFind *find = frmFind::Instance();
    find->show();
    find->raise();
    find->activateWindow();
}

void ViewAllCards()
{
    frmViewer::Instance()->FillItemViewer();
}

} // namespace studydialogs
