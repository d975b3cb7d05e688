// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>

class QObject;

// The one way out of the program to the user and the desktop: message boxes,
// the file and colour dialogs, and starting programs or documents. The program
// installs a prompter made of Qt's dialogs; tests install one that answers from
// a script and records what was asked.

enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { OK, OKCancel, YesNo, YesNoCancel };
enum class MsgResult { OK, Cancel, Yes, No };

struct MessageBoxRequest
{
    QString title;
    QString text;
    MsgIcon icon = MsgIcon::None;
    MsgButtons buttons = MsgButtons::OK;
};

enum class FileDialogKind { Open, Save };

struct FileDialogRequest
{
    FileDialogKind kind = FileDialogKind::Open;
    QString title;
    QString filter;     // Qt form: "Vocabrix Save File (*.vxs)"
    QString defaultExt; // without the dot
    QString fileName;   // the starting file or folder, may be empty
};

// Printing cards: a sheet of question | answer rows, or fold-over cards
// (question on one half of a strip, answer on the other).
enum class PrintLayout { Sheet, Fold };
enum class PrintTarget { Printer, PdfFile };

struct PrintRequest
{
    QString title;       // the dialog's caption
    QString pdfFileName; // suggested when printing to a file
    PrintLayout layout = PrintLayout::Sheet;
};

// What the print dialog settled: where to, which layout, on what paper.
struct PrintChoice
{
    PrintTarget target = PrintTarget::PdfFile;
    QString pdfFile;     // PdfFile: the file to write
    QString printerName; // Printer: the printer to send it to
    PrintLayout layout = PrintLayout::Sheet;
    QSizeF paperMillimetres; // width x height; empty for the default paper
    bool landscape = false;
    int copies = 1;
};

class Prompter
{
public:
    virtual ~Prompter() = default;

    virtual MsgResult ShowMessage(const MessageBoxRequest &request) = 0;
    // The chosen path, or nothing when the user cancelled.
    virtual std::optional<QString> AskFileName(const FileDialogRequest &request) = 0;
    // The chosen colour as 0x00BBGGRR, or nothing when cancelled.
    virtual std::optional<quint32> AskColor(quint32 initial) = 0;
    // Starts a program with an argument list (never through a shell), in a
    // working folder (empty: the program's own folder).
    virtual bool StartProgram(const QString &program, const QStringList &arguments,
                              const QString &workingDirectory) = 0;
    // Opens a file or address with the desktop's handler for it.
    virtual bool OpenDocument(const QString &pathOrUrl) = 0;
    // Shows one of the program's own windows modally (a dialog) and returns
    // its result when it closes.
    virtual int ShowModal(QObject *window) = 0;
    // The print dialog; nothing when the user cancelled.
    virtual std::optional<PrintChoice> AskPrint(const PrintRequest &request) = 0;
};

// The installed prompter; a headless one that refuses everything when none is.
Prompter &prompter();
// Installs a prompter (not owned); nullptr goes back to the headless one.
void SetPrompter(Prompter *prompter);

MsgResult MsgBox(const QString &title, const QString &text, MsgIcon icon = MsgIcon::None,
                 MsgButtons buttons = MsgButtons::OK);
