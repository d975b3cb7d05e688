#include "studydialogs.h"

#include "frmfind.h"
#include "frmoptions.h"
#include "frmviewer.h"

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
