// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/qtspeaker.h"

#include <QLocale>
#include <QTextToSpeech>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

void SpeechWorker::start()
{
    m_engine = new QTextToSpeech(this);
    QString why;
    if (m_engine->state() == QTextToSpeech::Error)
        why = u"The speech engine did not start: "_s + m_engine->errorString();
    connect(m_engine, &QTextToSpeech::stateChanged, this, [this](QTextToSpeech::State state) {
        if (state == QTextToSpeech::Error)
            Q_EMIT failed(u"The speech engine failed: "_s + m_engine->errorString());
        else if (state == QTextToSpeech::Ready && m_speaking)
            Q_EMIT spoken();
        m_speaking = state == QTextToSpeech::Speaking;
    });
    Q_EMIT started(why);
}

void SpeechWorker::say(const QString &text, const QString &language)
{
    if (!m_engine || m_engine->state() == QTextToSpeech::Error)
        return;
    const QLocale locale(language);
    if (m_engine->locale() != locale)
        m_engine->setLocale(locale);
    m_engine->say(text);
}

void SpeechWorker::finish()
{
    delete m_engine;
    m_engine = nullptr;
}

QtSpeaker::QtSpeaker(QObject *parent) : QObject(parent) {}

void QtSpeaker::LookForEngines() const
{
    // Quick and needs no engine, but it reads the plugin folder: start-up
    // does not wait for it, only the first question about speech does.
    if (m_lookedForEngines)
        return;
    m_lookedForEngines = true;
    if (QTextToSpeech::availableEngines().isEmpty())
        m_unavailable = u"No speech engine is installed (Qt has no text-to-speech plugin)"_s;
}

QtSpeaker::~QtSpeaker()
{
    if (!m_thread)
        return;
    QMetaObject::invokeMethod(m_worker, &SpeechWorker::finish, Qt::QueuedConnection);
    m_thread->quit();
    // An engine that never came up keeps its thread: the process ends without
    // it rather than wait for it.
    if (m_thread->wait(3000)) {
        delete m_worker;
        delete m_thread;
    }
}

void QtSpeaker::Start()
{
    LookForEngines();
    if (m_thread || !m_unavailable.isEmpty())
        return;
    m_thread = new QThread;
    m_thread->setObjectName(u"speech"_s);
    m_worker = new SpeechWorker;
    m_worker->moveToThread(m_thread);
    connect(m_worker, &SpeechWorker::started, this, [this](const QString &unavailable) {
        m_unavailable = unavailable;
        Q_EMIT Started();
    });
    connect(m_worker, &SpeechWorker::failed, this, [this](const QString &why) {
        m_unavailable = why;
        Q_EMIT Started();
    });
    connect(m_worker, &SpeechWorker::spoken, this, &QtSpeaker::Spoken);
    m_thread->start();
    QMetaObject::invokeMethod(m_worker, &SpeechWorker::start, Qt::QueuedConnection);
}

QString QtSpeaker::Unavailable() const
{
    LookForEngines();
    return m_unavailable;
}

void QtSpeaker::Say(const QString &text, const QString &language)
{
    Start();
    if (!m_unavailable.isEmpty() || text.trimmed().isEmpty())
        return;
    QMetaObject::invokeMethod(
            m_worker, [worker = m_worker, text, language] { worker->say(text, language); },
            Qt::QueuedConnection);
}
