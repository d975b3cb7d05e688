#include "commandline.h"
#include "core/modfolders.h"
#include "core/programstate.h"
#include "drawing/logicalfont.h"
#include "drawing/programicon.h"
#include "editorwindow.h"
#include "korva/korvahooks.h"
#include "windows/qtplatform.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    if (commandline::IsCommandLine(args)) {
        QCoreApplication app(argc, argv);
        // The engine asks before it overwrites a read-only file; nobody can
        // answer on the command line, so the answer is no and the verb says so.
        korva::setHooks({});
        QFile out, err;
        out.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
        err.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
        return commandline::Run(args, out, err);
    }

    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Quillmere"));
    QApplication::setApplicationName(QStringLiteral("vxedit"));
    QApplication::setWindowIcon(ProgramIcon());
    InstallFontSubstitutes();
    QtPrompter prompter;
    SetPrompter(&prompter);
    ConnectKorvaToProgram();
    // Its file dialogs open first where Vocabrix keeps its files, wherever
    // the editor was started from.
    if (const QString documents = modFolders::DocumentsFolder(); !documents.isEmpty())
        g_BaseDirectory = documents + u"Vocabrix"_s;

    EditorWindow window;
    window.show();
    if (!args.isEmpty())
        window.OpenFile(args.first());
    return app.exec();
}
