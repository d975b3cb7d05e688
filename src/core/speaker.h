// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The way out to the machine's speech engine. The program installs one made
// of Qt's text to speech; tests install one that records what it was asked to
// say. Language tags are short names such as "de" or "en-GB".
class Speaker
{
public:
    virtual ~Speaker() = default;

    // Empty when the engine can speak; otherwise why not, in a few words for
    // the user (a tooltip). Never blocks.
    virtual QString Unavailable() const = 0;
    // Starts speaking the text in the language and returns at once; what was
    // still being said stops.
    virtual void Say(const QString &text, const QString &language) = 0;
};

// The installed speaker; a mute one that says there is no engine when none is.
Speaker &speaker();
// Installs a speaker (not owned); nullptr goes back to the mute one.
void SetSpeaker(Speaker *speaker);
