// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/speechpage.h"

#include "core/prompter.h"
#include "core/speaker.h"
#include "windows/cardspeech.h"

#include <QCheckBox>
#include <QCollator>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

QList<QPair<QString, QString>> SpeechLanguageChoices()
{
    QList<QPair<QString, QString>> choices;
    QStringList seen;
    const QList<QLocale> all = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript,
                                                        QLocale::AnyTerritory);
    for (const QLocale &locale : all) {
        const QString tag = NormalizeLanguageTag(QLocale::languageToCode(locale.language()));
        if (tag.isEmpty() || seen.contains(tag))
            continue;
        seen << tag;
        choices.append({tag, LanguageName(tag) + u" ("_s + tag + u')'});
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(choices.begin(), choices.end(), [&](const auto &a, const auto &b) {
        return collator.compare(a.second, b.second) < 0;
    });
    return choices;
}

namespace {

void fill(QComboBox *box, const QList<QPair<QString, QString>> &choices, const QString &current)
{
    for (const auto &[tag, name] : choices)
        box->addItem(name, tag);
    // A tag with a region ("en-GB") is kept as it was chosen.
    if (box->findData(current) < 0)
        box->insertItem(0, LanguageName(current) + u" ("_s + current + u')', current);
    box->setCurrentIndex(box->findData(current));
}

} // namespace

SpeechPage::SpeechPage(QWidget *parent)
    : QWidget(parent)
    , QuestionLanguage(new QComboBox)
    , AnswerLanguage(new QComboBox)
    , SpeakNewCards(new QCheckBox(u"&Speak each new card by itself"_s))
    , TryButton(new QPushButton(u"&Try"_s))
    , EngineState(new QLabel)
{
    setObjectName(u"SpeechPage"_s);
    const SpeechSettings &settings = cardspeech::Settings();
    const auto choices = SpeechLanguageChoices();
    fill(QuestionLanguage, choices, settings.questionLanguage);
    fill(AnswerLanguage, choices, settings.answerLanguage);
    SpeakNewCards->setChecked(settings.speakNewCards);

    auto *languages = new QGroupBox(u"Languages"_s);
    auto *form = new QFormLayout(languages);
    auto *questionRow = new QHBoxLayout;
    questionRow->addWidget(QuestionLanguage, 1);
    questionRow->addWidget(TryButton);
    auto *questionLabel = new QLabel(u"&Question side:"_s);
    questionLabel->setBuddy(QuestionLanguage);
    form->addRow(questionLabel, questionRow);
    form->addRow(u"A&nswer side:"_s, AnswerLanguage);
    auto *own = new QLabel(u"A chapter that keeps languages of its own (set in the Vocabrix "
                           "Editor) is spoken in those."_s);
    own->setWordWrap(true);
    form->addRow(own);

    EngineState->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(languages);
    layout->addWidget(SpeakNewCards);
    layout->addWidget(EngineState);
    layout->addStretch();

    connect(QuestionLanguage, &QComboBox::activated, this, &SpeechPage::Changed);
    connect(AnswerLanguage, &QComboBox::activated, this, &SpeechPage::Changed);
    connect(SpeakNewCards, &QCheckBox::clicked, this, &SpeechPage::Changed);
    connect(TryButton, &QPushButton::clicked, this, [this] {
        // The language's name for itself, in its own voice.
        const QString tag = QuestionLanguage->currentData().toString();
        speaker().Say(QLocale(tag).nativeLanguageName(), tag);
        ShowEngineState();
    });
    ShowEngineState();
}

void SpeechPage::ShowEngineState()
{
    const QString why = speaker().Unavailable();
    TryButton->setEnabled(why.isEmpty());
    TryButton->setToolTip(why);
    EngineState->setText(why.isEmpty() ? u"The study window speaks the card on show with F5 or its "
                                         "menu's Speak Card."_s
                                       : why + u". Cards can't be spoken."_s);
}

void SpeechPage::showEvent(QShowEvent *event)
{
    ShowEngineState();
    QWidget::showEvent(event);
}

void SpeechPage::Changed()
{
    SpeechSettings settings;
    settings.questionLanguage = QuestionLanguage->currentData().toString();
    settings.answerLanguage = AnswerLanguage->currentData().toString();
    settings.speakNewCards = SpeakNewCards->isChecked();
    QString error;
    if (!cardspeech::ChangeSettings(settings, &error))
        MsgBox(u"Vocabrix Options"_s,
               u"The speech options couldn't be saved: "_s + error
                       + u". They stay in force until Vocabrix ends."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
}
