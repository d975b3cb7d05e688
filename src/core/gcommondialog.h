// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

// The program's file and colour dialogs: set what the dialog shows, call one of
// the Show operations, read the answer. They reach the desktop through the
// prompter, so tests answer them like message boxes.
class GCommonDialog
{
public:
    void SetDialogTitle(const QString &title) { m_title = title; }
    // In the form "Vocabrix Save File|*.vxs", pairs of description and pattern.
    void SetFilter(const QString &filter) { m_filter = filter; }
    void SetDefaultExt(const QString &ext) { m_defaultExt = ext; }
    void SetFileName(const QString &name) { m_fileName = name; }
    void SetColor(quint32 color) { m_color = color; }

    // False when the user cancelled.
    bool ShowOpen();
    bool ShowSave();
    bool ShowColor();

    QString FileName() const { return m_fileName; }
    quint32 Color() const { return m_color; }

    // The chosen file, or nothing when the user cancelled: the dialog set up
    // and shown in one call. A dialog for a kind of file (place: "progress",
    // "statistics", "chapter", ...) opens where such a file was last saved or
    // opened, the first time in the program's home folder.
    static std::optional<QString> AskOpen(const QString &title, const QString &filter,
                                          const QString &defaultExt = {},
                                          const QString &place = {});
    static std::optional<QString> AskSave(const QString &title, const QString &filter,
                                          const QString &defaultExt = {}, const QString &start = {},
                                          const QString &place = {});
    // The folder a dialog for that kind of file opens in.
    static QString StartFolder(const QString &place);

    // "A|*.a|B|*.b" -> "A (*.a);;B (*.b)"; a lone pattern is its own description.
    static QString ToQtFilter(const QString &filter);

private:
    bool ShowFileDialog(bool save);

    QString m_title;
    QString m_filter;
    QString m_defaultExt;
    QString m_fileName;
    quint32 m_color = 0;
};
