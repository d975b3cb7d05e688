// SPDX-License-Identifier: GPL-3.0-or-later
#include "languagesdialog.h"

#include "core/prompter.h"
#include "editorwindow.h"
#include "settings/speechsettings.h"
#include "windows/speechpage.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QUndoStack>

using namespace Qt::Literals::StringLiterals;

namespace {

QComboBox *languageBox(const QString &current)
{
    auto *box = new QComboBox;
    box->addItem(u"As Vocabrix's options say"_s, QString());
    for (const auto &[tag, name] : SpeechLanguageChoices())
        box->addItem(name, tag);
    if (box->findData(current) < 0)
        box->insertItem(1, LanguageName(current) + u" ("_s + current + u')', current);
    box->setCurrentIndex(box->findData(current));
    return box;
}

} // namespace

LanguagesDialog::LanguagesDialog(const ChapterLanguages &languages, QWidget *parent)
    : QDialog(parent)
    , QuestionLanguage(languageBox(languages.question))
    , AnswerLanguage(languageBox(languages.answer))
{
    setObjectName(u"LanguagesDialog"_s);
    setWindowTitle(u"Chapter Languages"_s);
    auto *form = new QFormLayout(this);
    auto *about = new QLabel(u"Vocabrix speaks each side of this chapter's cards in its "
                             "language. They are kept beside the chapter, in a file of the "
                             "same name ending in .lang, and saved with it."_s);
    about->setWordWrap(true);
    form->addRow(about);
    form->addRow(u"&Question side:"_s, QuestionLanguage);
    form->addRow(u"&Answer side:"_s, AnswerLanguage);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

ChapterLanguages LanguagesDialog::Languages() const
{
    return {QuestionLanguage->currentData().toString(), AnswerLanguage->currentData().toString()};
}

SetLanguagesCommand::SetLanguagesCommand(ChapterLanguages before, ChapterLanguages after,
                                         std::function<void(const ChapterLanguages &)> apply)
    : m_before(std::move(before))
    , m_after(std::move(after))
    , m_apply(std::move(apply))
{
    setText(u"Change languages"_s);
}

void EditorWindow::EditLanguages()
{
    if (m_document.ReadOnly())
        return;
    LanguagesDialog dialog(m_document.Languages(), this);
    if (prompter().ShowModal(&dialog) != QDialog::Accepted
        || dialog.Languages() == m_document.Languages())
        return;
    m_undo->push(new SetLanguagesCommand(m_document.Languages(), dialog.Languages(),
                                         [this](const ChapterLanguages &languages) {
                                             m_document.SetLanguages(languages);
                                         }));
}
