// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/prompter.h"

#include <QDebug>

namespace {

// Without a desktop nobody can answer: every box takes its safest answer,
// dialogs are cancelled and nothing is started.
class HeadlessPrompter final : public Prompter
{
public:
    MsgResult ShowMessage(const MessageBoxRequest &request) override
    {
        qWarning().noquote() << request.title << ":" << request.text;
        switch (request.buttons) {
        case MsgButtons::OK:
            return MsgResult::OK;
        case MsgButtons::YesNo:
            return MsgResult::No;
        case MsgButtons::OKCancel:
        case MsgButtons::YesNoCancel:
            break;
        }
        return MsgResult::Cancel;
    }
    std::optional<QString> AskFileName(const FileDialogRequest &) override { return std::nullopt; }
    std::optional<quint32> AskColor(quint32) override { return std::nullopt; }
    bool StartProgram(const QString &, const QStringList &, const QString &) override
    {
        return false;
    }
    bool OpenDocument(const QString &) override { return false; }
    int ShowModal(QObject *) override { return 0; }
    std::optional<PrintChoice> AskPrint(const PrintRequest &) override { return std::nullopt; }
};

HeadlessPrompter g_headless;
Prompter *g_prompter = nullptr;

} // namespace

Prompter &prompter()
{
    return g_prompter ? *g_prompter : g_headless;
}

void SetPrompter(Prompter *p)
{
    g_prompter = p;
}

MsgResult MsgBox(const QString &title, const QString &text, MsgIcon icon, MsgButtons buttons)
{
    return prompter().ShowMessage({title, text, icon, buttons});
}
