// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/prompter.h"

// The prompter of the running program: Qt's message boxes and dialogs over the
// active window, programs started detached, documents opened with the
// desktop's handler.
class QtPrompter final : public Prompter
{
public:
    MsgResult ShowMessage(const MessageBoxRequest &request) override;
    std::optional<QString> AskFileName(const FileDialogRequest &request) override;
    std::optional<quint32> AskColor(quint32 initial) override;
    bool StartProgram(const QString &program, const QStringList &arguments,
                      const QString &workingDirectory) override;
    bool OpenDocument(const QString &pathOrUrl) override;
    int ShowModal(QObject *window) override;
    std::optional<PrintChoice> AskPrint(const PrintRequest &request) override;
};

// Colours are kept as 0x00BBGGRR, red in the low byte.
quint32 ToOleColor(const class QColor &color);
QColor FromOleColor(quint32 color);
