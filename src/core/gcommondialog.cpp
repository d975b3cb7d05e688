// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/gcommondialog.h"

#include "core/extrasettings.h"
#include "core/programstate.h"
#include "core/prompter.h"

#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

QString GCommonDialog::ToQtFilter(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList out;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        const QString description = parts[i].trimmed();
        const QString pattern = i + 1 < parts.size() ? parts[i + 1].trimmed() : description;
        if (pattern.isEmpty())
            continue;
        QString patterns = pattern;
        patterns.replace(u';', u' ');
        out << (description.isEmpty() ? patterns : description) + u" ("_s + patterns + u')';
    }
    return out.join(u";;"_s);
}

namespace {

QString folderKey(const QString &place)
{
    return u"folder."_s + place;
}

// Remembers where a file of the kind was chosen, for the next dialog.
std::optional<QString> remembered(const std::optional<QString> &chosen, const QString &place)
{
    if (chosen && !place.isEmpty())
        g_Extras.SetString(folderKey(place), QFileInfo(*chosen).absolutePath());
    return chosen;
}

} // namespace

QString GCommonDialog::StartFolder(const QString &place)
{
    const QString last = place.isEmpty() ? QString() : g_Extras.String(folderKey(place));
    if (!last.isEmpty() && QFileInfo(last).isDir())
        return last;
    return g_BaseDirectory;
}

std::optional<QString> GCommonDialog::AskOpen(const QString &title, const QString &filter,
                                              const QString &defaultExt, const QString &place)
{
    GCommonDialog dialog;
    dialog.SetDialogTitle(title);
    dialog.SetFilter(filter);
    dialog.SetDefaultExt(defaultExt);
    if (!place.isEmpty())
        dialog.SetFileName(StartFolder(place));
    if (!dialog.ShowOpen())
        return std::nullopt;
    return remembered(dialog.FileName(), place);
}

std::optional<QString> GCommonDialog::AskSave(const QString &title, const QString &filter,
                                              const QString &defaultExt, const QString &start,
                                              const QString &place)
{
    GCommonDialog dialog;
    dialog.SetDialogTitle(title);
    dialog.SetFilter(filter);
    dialog.SetDefaultExt(defaultExt);
    dialog.SetFileName(!start.isEmpty() || place.isEmpty() ? start : StartFolder(place));
    if (!dialog.ShowSave())
        return std::nullopt;
    return remembered(dialog.FileName(), place);
}

bool GCommonDialog::ShowOpen()
{
    return ShowFileDialog(false);
}

bool GCommonDialog::ShowSave()
{
    return ShowFileDialog(true);
}

bool GCommonDialog::ShowFileDialog(bool save)
{
    FileDialogRequest request;
    request.kind = save ? FileDialogKind::Save : FileDialogKind::Open;
    request.title = m_title;
    request.filter = ToQtFilter(m_filter);
    request.defaultExt = m_defaultExt;
    request.fileName = m_fileName;
    const std::optional<QString> chosen = prompter().AskFileName(request);
    if (!chosen || chosen->isEmpty())
        return false;
    QString name = *chosen;
    if (!m_defaultExt.isEmpty() && QFileInfo(name).suffix().isEmpty())
        name += u'.' + m_defaultExt;
    m_fileName = name;
    return true;
}

bool GCommonDialog::ShowColor()
{
    const std::optional<quint32> chosen = prompter().AskColor(m_color);
    if (!chosen)
        return false;
    m_color = *chosen;
    return true;
}
