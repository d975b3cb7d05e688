// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "korva/diskfile.h"
#include "korva/korvahooks.h"
#include "testsupport.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Count, first and last index at once.
QList<int> indices(const ikorvalite &db)
{
    return {db.Count(), db.FirstIndex(), db.LastIndex()};
}

const QByteArray kEmptyFile = bytes::header("d", 4, 0) + bytes::placeholder();

} // namespace

// The engine reports through its hooks; these tests listen there directly.
class KorvaFixture : public QObject
{
protected:
    QTemporaryDir m_dir;
    QStringList m_log;
    QStringList m_questions; // "title | text"
    QStringList m_warnings;
    bool m_answerYes = false;

    QString path(const QString &name) const { return m_dir.filePath(name); }

    void listen()
    {
        m_log.clear();
        m_questions.clear();
        m_warnings.clear();
        m_answerYes = false;
        korva::Hooks hooks;
        hooks.log = [this](const QString &m) { m_log << m; };
        hooks.askYesNo = [this](const QString &t, const QString &x) {
            m_questions << t + u" | "_s + x;
            return m_answerYes;
        };
        hooks.warn = [this](const QString &t, const QString &x) { m_warnings << t + u" | "_s + x; };
        korva::setHooks(hooks);
    }

    void stopListening()
    {
        korva::setHooks({});
        korva::setSaveFault({});
    }
};
