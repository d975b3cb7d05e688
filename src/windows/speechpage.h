// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

// The options' "Speech" page: the language each side of a card is spoken in,
// whether a new card speaks by itself, and how the speech engine is. Every
// change is in force and saved at once, in the speech options' own file.
class SpeechPage : public QWidget
{
    Q_OBJECT

public:
    explicit SpeechPage(QWidget *parent = nullptr);

    QComboBox *QuestionLanguage;
    QComboBox *AnswerLanguage;
    QCheckBox *SpeakNewCards;
    QPushButton *TryButton; // says the question language's name in it
    QLabel *EngineState;

    // Says whether the engine can speak, and why not.
    void ShowEngineState();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void Changed();
};

// Every language people can choose, as (tag, "Name (tag)") in name order.
QList<QPair<QString, QString>> SpeechLanguageChoices();
