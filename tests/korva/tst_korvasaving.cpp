// SPDX-License-Identifier: GPL-3.0-or-later
#include "korvafixture.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

class KorvaSavingTest : public KorvaFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { listen(); }
    void cleanup() { stopListening(); }

    void saveWritesExactLayout()
    {
        const QString p = path(u"new.zel"_s);
        ikorvalite db;
        QVERIFY(db.Mount(p, false)); // its log lines: in the first start's (tst_app)
        QVERIFY(QFileInfo(p).isFile());
        QCOMPARE(QFileInfo(p).size(), 0); // nothing until Save
        QCOMPARE(indices(db), QList<int>({0, 1, 0}));

        QVERIFY(db.Save());
        const QByteArray header = "KORVA Database File; KORVA Lite version";
        QCOMPARE(ReadFileBytes(p), bytes::header(header, 4, 0) + bytes::placeholder());

        db.SetValue(u"flist_count"_s, QString(), 4, QString());
        db.SetValue(u"flist_name_1"_s, u"/home/ü/ex1.zel"_s, 0, QString());
        db.SetValue(u"show_mouse_hover"_s, QString(), -1, u"options"_s);
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(p),
                 bytes::header(header, 4, 3) + bytes::placeholder() + bytes::entry("flist_count", 0, {}, 4, {})
                         + bytes::entry("flist_name_1", -1, "/home/\xFC/ex1.zel", 0, {})
                         + bytes::entry("show_mouse_hover", 0, {}, -1, "options"));
    }

    // Limits are bytes in the file's encoding: a record of key "k", a text and
    // an empty note takes 13 + its bytes; a header of description "d", a title
    // and the marker 18 + the title's bytes.
    void byteLimitsInBothEncodings_data()
    {
        QTest::addColumn<bool>("marked");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("stored"); // empty: refused
        QTest::addColumn<QString>("why");
        auto row = [](const char *name, bool marked, const QString &title, const QString &text,
                      const QByteArray &stored,
                      const QString &why = {}) { QTest::newRow(name) << marked << title << text << stored << why; };
        auto needs = [](const QString &what, bool utf8) {
            return what + u" needs 129 bytes, more than the 128 bytes of a record"_s
                    + (utf8 ? u" (its texts in UTF-8)"_s : QString());
        };
        const QString zhe = u"Ж"_s, entry = u"entry 1 ('k')"_s;
        row("1252: 115 umlauts fit", false, {}, QString(115, u'ü'), QByteArray(115, '\xFC'));
        row("1252: 116 letters are a byte too many", false, {}, QString(116, u'x'), {}, needs(entry, false));
        row("utf-8: 57 Cyrillic letters and a byte fit", true, {}, zhe.repeated(57) + u'x',
            QByteArray("\xD0\x96").repeated(57) + 'x');
        row("utf-8: 58 Cyrillic letters are a byte too many", true, {}, zhe.repeated(58), {}, needs(entry, true));
        row("1252 turned utf-8 by a Cyrillic letter", false, {}, QString(57, u'ü') + zhe, {}, needs(entry, true));
        row("utf-8: a title of 111 bytes", true, zhe.repeated(55) + u'x', u"x"_s, {}, needs(u"the header"_s, true));
        row("half of a character, in any encoding", true, {}, u"a\xD800"_s, {},
            entry + u": the text holds U+D800, half of a character without its other half, which cannot be stored"_s);
    }
    void byteLimitsInBothEncodings()
    {
        QFETCH(bool, marked);
        QFETCH(QString, title);
        QFETCH(QString, text);
        QFETCH(QByteArray, stored);
        QFETCH(QString, why);
        const korva::Header h {u"d"_s, 0, 0, title, marked ? u"utf-8"_s : QString()};
        ikorvalite db;
        db.Assign(h, {korva::Entry(), korva::Entry {u"k"_s, -1, text, 0, {}}});
        const QString p = path(u"limits.zel"_s);
        WriteFileBytes(p, "before");
        QCOMPARE(db.SaveAs(p), !stored.isEmpty());
        if (stored.isEmpty()) {
            QCOMPARE(ReadFileBytes(p), QByteArray("before"));
            QCOMPARE(m_warnings,
                     QStringList(u"Can't save file | The file '"_s + p + u"' couldn't be saved: "_s + why
                                 + u". The file on disk was not changed."_s));
            return;
        }
        QCOMPARE(ReadFileBytes(p).mid(128), bytes::placeholder() + bytes::entry("k", -1, stored, 0, {}));
    }

    // Yes overwrites the read-only file (and makes it writable), no keeps it.
    void readOnlyQuestion()
    {
        const QString p = path(u"ro.zel"_s);
        for (const bool answerYes : {true, false}) {
            WriteFileBytes(p, kEmptyFile);
            QFile::setPermissions(p, QFileDevice::ReadOwner | QFileDevice::ReadUser);
            listen();
            ikorvalite db;
            QVERIFY(db.Mount(p, false));
            db.SetValue(u"x"_s, QString(), 1, QString());
            m_answerYes = answerYes;
            QCOMPARE(db.Save(), answerYes);
            QCOMPARE(m_questions,
                     QStringList(u"Readonly File Detected | The specified file is readonly. Do you want "
                                 "to save to this location anyways?"_s));
            QCOMPARE(ReadFileBytes(p),
                     answerYes ? bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("x", 0, {}, 1, {})
                               : kEmptyFile);
            QCOMPARE(bool(QFileInfo(p).permissions() & QFileDevice::WriteOwner), answerYes);
            QVERIFY(m_warnings.empty());
        }
    }

    void saveThroughLinkKeepsLinkAndPermissions()
    {
        const QString real = path(u"real.zel"_s), link = path(u"link.zel"_s);
        WriteFileBytes(real, kEmptyFile);
        QFile::setPermissions(real, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
        QVERIFY(QFile::link(real, link));
        ikorvalite db;
        QVERIFY(db.Mount(link, false));
        db.SetValue(u"k"_s, QString(), 7, QString());
        QVERIFY(db.Save());
        QCOMPARE(QFileInfo(link).symLinkTarget(), real);
        QCOMPARE(ReadFileBytes(real),
                 bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("k", 0, {}, 7, {}));
        QCOMPARE(QFileInfo(real).permissions() & 0x0FFF,
                 QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ReadGroup);
    }

    // A save that was cut off (the process killed) leaves its temporary file;
    // the next save of the same file removes it, and nothing else.
    void abandonedTemporaryFilesRemoved()
    {
        QTemporaryDir dir;
        auto at = [&](const QString &name) { return dir.filePath(name); };
        const QStringList abandoned {u"t.zel.vxsave-AbC123"_s, u"t.zel.vxsave-000000"_s};
        const QStringList kept {u"t.zel.vxsave-AbC12"_s, u"t.zel.vxsave-AbC1234"_s, u"t.zel.vxsave-AbC12_"_s,
                                u"x.zel.vxsave-AbC123"_s, u"t.zel.AbC123"_s};
        for (const QString &name : abandoned + kept)
            WriteFileBytes(at(name), "left over");
        QVERIFY(QDir(dir.path()).mkdir(u"t.zel.vxsave-Folder"_s));
        QVERIFY(QFile::link(at(u"x.zel.vxsave-AbC123"_s), at(u"t.zel.vxsave-Link00"_s)));
        // A save that is still running holds its file locked.
        const int inUse = ::open(QFile::encodeName(at(u"t.zel.vxsave-InUse1"_s)).constData(), O_RDONLY | O_CREAT, 0600);
        QVERIFY(inUse >= 0 && ::flock(inUse, LOCK_EX) == 0);

        QString error;
        const bool saved = korva::saveFile(at(u"t.zel"_s), "new", &error);
        ::close(inUse);
        QVERIFY2(saved, qPrintable(error));
        QCOMPARE(ReadFileBytes(at(u"t.zel"_s)), QByteArray("new"));
        QStringList expected = kept
                + QStringList {u"t.zel"_s, u"t.zel.vxsave-Folder"_s, u"t.zel.vxsave-Link00"_s,
                               u"t.zel.vxsave-InUse1"_s};
        expected.sort();
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System, QDir::Name),
                 expected);
    }

    // A name as long as a file name can be: the temporary file's name is cut
    // to fit beside it, never inside a character, and one left by a save cut
    // off is found again.
    void longestNames()
    {
        const QString wide = u"\U0001F600"_s; // four bytes
        // The name, and the name as its temporary files begin with it: 241
        // bytes would end inside the 60th wide letter.
        const std::pair<QString, QString> names[] = {{QString(251, u'n') + u".zel"_s, QString(241, u'n')},
                                                     {u"aa"_s + wide.repeated(63), u"aa"_s + wide.repeated(59)}};
        for (const auto &[name, cut] : names) {
            QTemporaryDir dir;
            WriteFileBytes(dir.filePath(cut + u".vxsave-AbC123"_s), "left over");
            QString error;
            QVERIFY2(korva::saveFile(dir.filePath(name), "new", &error), qPrintable(error));
            QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList({name}));
            QCOMPARE(ReadFileBytes(dir.filePath(name)), QByteArray("new"));
        }
    }
};

QTEST_GUILESS_MAIN(KorvaSavingTest)
#include "tst_korvasaving.moc"
