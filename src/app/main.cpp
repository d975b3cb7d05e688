// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/modmain.h"
#include "core/programstate.h"
#include "core/version.h"
#include "windows/qtplatform.h"
#include "windows/qtspeaker.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

namespace {

const char kHelp[] = "usage: vocabrix [FILE.zel | FILE.vxs] [show_console]\n"
                     "       vocabrix --help | --version\n"
                     "\n"
                     "Study vocabulary with flash cards. Chapters are chosen in the program's\n"
                     "window; chapter files are made with vxedit.\n"
                     "\n"
                     "  FILE.zel      add this chapter to the list and select it\n"
                     "  FILE.vxs      resume from this progress file\n"
                     "  show_console  also log the run mode at start-up (found anywhere on the\n"
                     "                command line, in any case)\n"
                     "  -h, --help    print this help and exit\n"
                     "  --version     print the version and exit\n"
                     "\n"
                     "Settings and the chapter list: ~/Documents/Vocabrix/sys.zel\n";

// --help and --version are answered on the terminal before any window exists,
// so they need no display. Every other argument is the program's own business
// (Qt's options, the show_console switch) and is otherwise ignored.
bool answeredOnTerminal(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(kHelp, stdout);
            return true;
        }
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("vocabrix %d.%d.%d\n", version::kMajor, version::kMinor,
                        version::kRevision);
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    if (answeredOnTerminal(argc, argv))
        return 0;

    QApplication app(argc, argv);
    modMain::PrepareApplication();

    QtPrompter prompter;
    SetPrompter(&prompter);
    QtSpeaker speech;
    SetSpeaker(&speech);
    ResetProgramState();
    modMain::InstallLifecycle();

    const QStringList arguments = QCoreApplication::arguments().mid(1);
    modMain::StartProgram(arguments);
    // A start-up abandoned before the event loop runs has already set the status.
    if (g_ProcessReleased)
        return g_ExitStatus;
    modMain::OpenFileArguments(arguments);
    return app.exec();
}
