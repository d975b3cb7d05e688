// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/speaker.h"

#include <QObject>
#include <QStringList>

class QTextToSpeech;
class QThread;

// Lives in the speaker's thread: makes the engine there and talks to it.
class SpeechWorker : public QObject
{
    Q_OBJECT

public:
    void start();
    void say(const QString &text, const QString &language);
    void finish();

Q_SIGNALS:
    void started(const QString &unavailable);
    void failed(const QString &why);
    void spoken();

private:
    QTextToSpeech *m_engine = nullptr;
    bool m_speaking = false;
};

// The speaker of the running program: Qt's text to speech in a thread of
// its own. Starting an engine can take seconds (speech-dispatcher is
// started on the first connection) or never end (a daemon without sound);
// the windows go on meanwhile, and what is said waits for the engine.
// The engine starts at the first Say or Start, not before, so a program
// that never speaks starts no daemon.
class QtSpeaker final : public QObject, public Speaker
{
    Q_OBJECT

public:
    explicit QtSpeaker(QObject *parent = nullptr);
    ~QtSpeaker() override;

    QString Unavailable() const override;
    void Say(const QString &text, const QString &language) override;

    // Starts the engine (once).
    void Start();

Q_SIGNALS:
    // The engine is up, or failed (Unavailable() says why).
    void Started();
    // Something said has been spoken to its end.
    void Spoken();

private:
    // Finds whether Qt has an engine plugin at all (once).
    void LookForEngines() const;

    QThread *m_thread = nullptr;
    SpeechWorker *m_worker = nullptr;
    mutable bool m_lookedForEngines = false;
    mutable QString m_unavailable;
};
