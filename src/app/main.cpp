#include "controls/zelaccessible.h"
#include "core/modmain.h"
#include "core/programstate.h"
#include "core/qtplatform.h"
#include "dialogs/programstyle.h"
#include "study/logicalfont.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vocabrix"));
    QApplication::setWindowIcon(programstyle::ProgramIcon());
    // The program ends when shutdown says so, not when a window closes: a new
    // session hides every window for a moment.
    QApplication::setQuitOnLastWindowClosed(false);
    InstallFontSubstitutes();
    InstallControlAccessibility();

    QtPrompter prompter;
    SetPrompter(&prompter);
    ResetProgramState();

    modMain::StartProgram();
    if (g_ProcessReleased)
        return 0;
    return app.exec();
}
