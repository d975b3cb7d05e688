// SPDX-License-Identifier: GPL-3.0-or-later
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
#include <QGuiApplication>
#include <QIcon>

using namespace Qt::Literals::StringLiterals;
#include <memory>

namespace {

QtMessageHandler g_qtMessages = nullptr;

// The offscreen platform asks for a runtime folder that a terminal without a
// desktop session lacks; nothing printed needs one, so the warning is noise.
void quietAboutRuntimeFolder(QtMsgType type, const QMessageLogContext &context,
                             const QString &message)
{
    if (message.startsWith(QStringLiteral("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return;
    g_qtMessages(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    if (commandline::IsCommandLine(args)) {
        std::unique_ptr<QCoreApplication> app;
        if (commandline::NeedsFonts(args)) {
            // Laying text out takes the machine's fonts, hence a Gui application;
            // nothing is shown, so the offscreen platform does without a display.
            qputenv("QT_QPA_PLATFORM", "offscreen");
            g_qtMessages = qInstallMessageHandler(quietAboutRuntimeFolder);
            app = std::make_unique<QGuiApplication>(argc, argv);
            InstallFontSubstitutes();
        } else {
            app = std::make_unique<QCoreApplication>(argc, argv);
        }
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
