#include "windows/qtplatform.h"

#include <QApplication>
#include <QColor>
#include <QColorDialog>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QUrl>

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
