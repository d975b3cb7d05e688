// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/qtplatform.h"

#include <QApplication>
#include <QColor>
#include <QColorDialog>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRadioButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

QMessageBox::Icon toQt(MsgIcon icon)
{
    switch (icon) {
    case MsgIcon::Critical:
        return QMessageBox::Critical;
    case MsgIcon::Question:
        return QMessageBox::Question;
    case MsgIcon::Exclamation:
        return QMessageBox::Warning;
    case MsgIcon::Information:
        return QMessageBox::Information;
    case MsgIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons toQt(MsgButtons buttons)
{
    switch (buttons) {
    case MsgButtons::OK:
        return QMessageBox::Ok;
    case MsgButtons::OKCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case MsgButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case MsgButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QWidget *dialogParent()
{
    return QApplication::activeWindow();
}

} // namespace

quint32 ToOleColor(const QColor &color)
{
    return quint32(color.red()) | (quint32(color.green()) << 8) | (quint32(color.blue()) << 16);
}

QColor FromOleColor(quint32 color)
{
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

MsgResult QtPrompter::ShowMessage(const MessageBoxRequest &request)
{
    // Texts keep the line ends they were written with; the box shows plain lines.
    QString text = request.text;
    text.replace(u"\r\n"_s, u"\n"_s);
    QMessageBox box(toQt(request.icon), request.title, text, toQt(request.buttons), dialogParent());
    // Closing the box with Escape or the title bar gives the safest answer.
    if (request.buttons == MsgButtons::YesNo)
        box.setEscapeButton(QMessageBox::No);
    switch (box.exec()) {
    case QMessageBox::Ok:
        return MsgResult::OK;
    case QMessageBox::Yes:
        return MsgResult::Yes;
    case QMessageBox::No:
        return MsgResult::No;
    default:
        return request.buttons == MsgButtons::OK ? MsgResult::OK : MsgResult::Cancel;
    }
}

std::optional<QString> QtPrompter::AskFileName(const FileDialogRequest &request)
{
    QFileDialog dialog(dialogParent(), request.title, request.fileName, request.filter);
    const bool save = request.kind == FileDialogKind::Save;
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(request.defaultExt);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

std::optional<quint32> QtPrompter::AskColor(quint32 initial)
{
    const QColor chosen = QColorDialog::getColor(FromOleColor(initial), dialogParent());
    if (!chosen.isValid())
        return std::nullopt;
    return ToOleColor(chosen);
}

bool QtPrompter::StartProgram(const QString &program, const QStringList &arguments,
                              const QString &workingDirectory)
{
    if (program.isEmpty())
        return false;
    return QProcess::startDetached(program, arguments,
                                   workingDirectory.isEmpty() ? QFileInfo(program).absolutePath()
                                                              : workingDirectory);
}

bool QtPrompter::OpenDocument(const QString &pathOrUrl)
{
    const QUrl url =
            QFileInfo::exists(pathOrUrl) ? QUrl::fromLocalFile(pathOrUrl) : QUrl(pathOrUrl);
    return QDesktopServices::openUrl(url);
}

int QtPrompter::ShowModal(QObject *window)
{
    auto *dialog = qobject_cast<QDialog *>(window);
    return dialog ? dialog->exec() : 0;
}

std::optional<PrintChoice> QtPrompter::AskPrint(const PrintRequest &request)
{
    QPrinter printer(QPrinter::HighResolution);
    // Without a printer the dialog starts on "Print to File (PDF)" with this file.
    if (QPrinterInfo::defaultPrinter().isNull())
        printer.setOutputFileName(request.pdfFileName);
    QPrintDialog dialog(&printer, dialogParent());
    dialog.setWindowTitle(request.title);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);

    // The layout is one more page of the dialog's options.
    auto *layoutPage = new QWidget(&dialog);
    layoutPage->setWindowTitle(u"Layout"_s);
    auto *sheet = new QRadioButton(u"&Sheet: a question | answer row for each card"_s);
    auto *fold = new QRadioButton(
            u"&Fold-over cards: the question on one half, the answer on the other"_s);
    (request.layout == PrintLayout::Fold ? fold : sheet)->setChecked(true);
    auto *column = new QVBoxLayout(layoutPage);
    column->addWidget(sheet);
    column->addWidget(fold);
    column->addStretch();
    dialog.setOptionTabs({layoutPage});
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;

    PrintChoice choice;
    choice.layout = fold->isChecked() ? PrintLayout::Fold : PrintLayout::Sheet;
    if (printer.outputFormat() == QPrinter::PdfFormat) {
        choice.target = PrintTarget::PdfFile;
        choice.pdfFile = printer.outputFileName();
        if (choice.pdfFile.isEmpty())
            return std::nullopt;
    } else {
        choice.target = PrintTarget::Printer;
        choice.printerName = printer.printerName();
    }
    const QPageLayout page = printer.pageLayout();
    choice.paperMillimetres = page.pageSize().size(QPageSize::Millimeter);
    choice.landscape = page.orientation() == QPageLayout::Landscape;
    choice.copies = printer.copyCount();
    return choice;
}
