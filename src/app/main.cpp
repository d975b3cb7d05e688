#include "app/modmain.h"
#include "controls/zelaccessible.h"
#include "core/programstate.h"
#include "drawing/logicalfont.h"
#include "drawing/programicon.h"
#include "windows/qtplatform.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vocabrix"));
    QApplication::setWindowIcon(ProgramIcon());
    // The program ends when shutdown says so, not when a window closes: a new
    // session hides every window for a moment.
    QApplication::setQuitOnLastWindowClosed(false);
    InstallFontSubstitutes();
    InstallControlAccessibility();

    QtPrompter prompter;
    SetPrompter(&prompter);
    ResetProgramState();
    modMain::InstallLifecycle();

    modMain::StartProgram();
    if (g_ProcessReleased)
        return 0;
    return app.exec();
}
