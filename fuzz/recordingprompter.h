// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A prompter for the fuzz targets: the file dialog answers with the path it
// is given, and every message box is counted.
#include "core/prompter.h"

#include <QStringList>

namespace fuzz {

class RecordingPrompter final : public Prompter
{
public:
    QString fileAnswer;
    QStringList boxes;

    MsgResult ShowMessage(const MessageBoxRequest &request) override
    {
        boxes << request.title;
        return MsgResult::OK;
    }
    std::optional<QString> AskFileName(const FileDialogRequest &) override { return fileAnswer; }
    std::optional<quint32> AskColor(quint32) override { return std::nullopt; }
    bool StartProgram(const QString &, const QStringList &, const QString &) override { return false; }
    bool OpenDocument(const QString &) override { return true; }
    int ShowModal(QObject *) override { return 0; }
    std::optional<PrintChoice> AskPrint(const PrintRequest &) override { return std::nullopt; }
};

} // namespace fuzz
