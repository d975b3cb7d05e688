// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chaptermodel.h"
#include "editorwindow.h"
#include "uitestsupport.h"

#include <QCoreApplication>
#include <QSettings>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";

QByteArray chapterFile(const QList<std::array<QByteArray, 3>> &cards, const QByteArray &title = "Titel")
{
    QByteArray file = bytes::header(kChapter, 4, qint16(cards.size()), title) + bytes::placeholder();
    for (const auto &c : cards)
        file += bytes::entry(c[0], -1, c[1], 0, c[2]);
    return file;
}

} // namespace

// The editor as the tests open it: a home of its own and a new window for
// every test.
class EditorFixture : public QObject
{
protected:
    std::unique_ptr<TestEnvironment> m_env;
    std::unique_ptr<EditorWindow> m_window;

    QString path(const QString &name) const { return m_env->path(name); }

    // A window with a chapter of these questions open (answers a1.., notes n1..).
    ChapterModel &open(const QStringList &qs)
    {
        QList<std::array<QByteArray, 3>> cards;
        for (int i = 0; i < qs.size(); ++i)
            cards.append({qs[i].toLatin1(), "a" + QByteArray::number(i + 1), "n" + QByteArray::number(i + 1)});
        WriteFileBytes(path(u"open.zel"_s), chapterFile(cards));
        [&] { QVERIFY(m_window->OpenFile(path(u"open.zel"_s))); }();
        return *m_window->Model();
    }

    void prepareEditor()
    {
        InstallFontSubstitutes();
        QCoreApplication::setOrganizationName(u"Quillmere-test"_s);
        QCoreApplication::setApplicationName(u"vxedit-test"_s);
    }

    void beginTest()
    {
        m_env = std::make_unique<TestEnvironment>();
        QSettings().clear();
        m_window = std::make_unique<EditorWindow>();
    }

    void endTest()
    {
        m_window.reset();
        UnloadAllForms();
        m_env.reset();
    }
};
