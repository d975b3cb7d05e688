// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"
#include "pdftext.h"
#include "uitestsupport.h"
#include "windows/cardspeech.h"
#include "windows/frmoptions.h"
#include "windows/qtspeaker.h"
#include "windows/speechpage.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSignalSpy>

#include <csignal>
#include <sys/types.h>

using namespace Qt::Literals::StringLiterals;

// speech-dispatcher's client library reads the engine's list of voices with
// strstr, which AddressSanitizer's check of every call makes quadratic:
// minutes for espeak-ng's thousands of voices instead of a second.
extern "C" const char *__asan_default_options()
{
    return "intercept_strstr=0";
}

namespace {

const QString kPrintTitle = u"Print Trouble Cards"_s;

// The study window on card q2 of q0..q5, these cards marked, with a settings
// file for the windows' positions.
void startStudying(TestEnvironment &env, const QList<int> &trouble)
{
    g_MasterDb = std::make_unique<ikorvalite>();
    QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
    StudyDeck(6, trouble);
    modrender::ShowFirstCard();
    modrender::NextCard();
    modrender::NextCard();
}

void press(const QString &route)
{
    frmMain *main = frmMain::Existing();
    if (route.startsWith(u"menu "_s)) {
        main->findChild<QAction *>(route.mid(5))->trigger();
        return;
    }
    const QKeySequence keys = QKeySequence::fromString(route.mid(4));
    for (int k = 0; k < keys.count(); ++k)
        QTest::keyClick(main, keys[k].key(), keys[k].keyboardModifiers());
}

// The questions a PDF shows, in order.
QStringList questionsIn(const PdfText &pdf)
{
    QStringList out;
    for (const PdfWord &w : pdf.words)
        if (w.text.size() == 2 && w.text.startsWith(u'q'))
            out << w.text;
    return out;
}

} // namespace

class AidsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup() { UnloadAllForms(); }

    // "Print Trouble Cards..." by key and menu: what is asked, what the file
    // holds, what the user is told.
    void print_data()
    {
        QTest::addColumn<QList<int>>("trouble"); // the marked cards
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("answers"); // the box's answer, then the dialog's
        QTest::addColumn<QString>("printed"); // the questions in the file
        QTest::addColumn<QString>("box");
        const QString ask = Box(kPrintTitle, u"No card is marked as a trouble card. Print all 6 cards instead?"_s,
                                MsgIcon::Question, MsgButtons::YesNo);
        const QString failed = kPrintTitle + u" | The file '%1' couldn't be written: "_s;
        const QList<int> none, some {1, 3};
        QTest::newRow("P: the trouble cards") << some << u"key P"_s << u"- sheet"_s << u"q1 q3"_s << QString();
        QTest::newRow("the menu item, fold-over")
                << some << u"menu mP_print"_s << u"- fold"_s << u"q1 q3"_s << QString();
        QTest::newRow("none marked: yes, all") << none << u"key P"_s << u"yes sheet"_s << u"q0 q1 q2 q3 q4 q5"_s << ask;
        QTest::newRow("none marked: no") << none << u"key P"_s << u"no -"_s << QString() << ask;
        QTest::newRow("dialog cancelled") << some << u"key P"_s << u"- cancel"_s << QString() << QString();
        QTest::newRow("a folder in the file's place") << some << u"key P"_s << u"- folder"_s << QString() << failed;
    }
    void print()
    {
        QFETCH(QList<int>, trouble);
        QFETCH(QString, route);
        QFETCH(QString, answers);
        QFETCH(QString, printed);
        QFETCH(QString, box);
        TestEnvironment env;
        startStudying(env, trouble);
        const QString target = env.path(u"out/cards.pdf"_s);
        QDir().mkpath(env.path(u"out/folder.pdf"_s));
        const QString box1 = answers.section(u' ', 0, 0), dialog = answers.section(u' ', 1, 1);
        if (box1 != u"-"_s)
            env.prompter.answers = {box1 == u"yes"_s ? MsgResult::Yes : MsgResult::No};
        PrintChoice choice;
        choice.pdfFile = dialog == u"folder"_s ? env.path(u"out/folder.pdf"_s) : target;
        choice.layout = dialog == u"fold"_s ? PrintLayout::Fold : PrintLayout::Sheet;
        if (dialog != u"cancel"_s && dialog != u"-"_s)
            env.prompter.printAnswers = {choice};
        press(route);

        QCOMPARE(env.prompter.printDialogs.size(), size_t(box1 != u"no"_s ? 1 : 0));
        const QStringList seen = env.prompter.seen();
        QCOMPARE(seen.size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QVERIFY2(seen[0].startsWith(QString(box).replace(u"%1"_s, choice.pdfFile)), qPrintable(seen[0]));
        QCOMPARE(QFileInfo::exists(target), !printed.isEmpty());
        if (printed.isEmpty())
            return;
        const PdfText pdf = ReadPdf(target);
        QCOMPARE(questionsIn(pdf).join(u' '), printed);
        // Fold-over cards set the question in the middle of its half.
        const PdfWord &first = *std::find_if(pdf.words.begin(), pdf.words.end(),
                                             [&](const PdfWord &w) { return w.text == printed.left(2); });
        QCOMPARE(first.box.left() > first.pageWidth / 8, dialog == u"fold"_s);
        QCOMPARE(qRound(first.pageWidth), 595); // A4 upright, unless the dialog said otherwise
    }

    // "Speak Card" by key and menu: what is said, in which language.
    void speak_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("said");
        QTest::newRow("F5: the question, in German") << QString() << u"key F5"_s << u"de: q2"_s;
        QTest::newRow("the menu item") << QString() << u"menu mP_speak"_s << u"de: q2"_s;
        QTest::newRow("the answer side, in English") << u"answer"_s << u"key F5"_s << u"en: a2"_s;
        QTest::newRow("the options' languages") << u"options=es,pt answer"_s << u"key F5"_s << u"pt: a2"_s;
        QTest::newRow("the chapter's before the options'")
                << u"options=es,pt chapter=fr,it"_s << u"key F5"_s << u"fr: q2"_s;
        QTest::newRow("the chapter's answer language") << u"chapter=fr,it answer"_s << u"key F5"_s << u"it: a2"_s;
        QTest::newRow("no engine: nothing said") << u"noengine"_s << u"key F5"_s << QString();
        QTest::newRow("a new card speaks when asked") << u"auto"_s << u"key Right"_s << u"de: q3"_s;
        QTest::newRow("not the empty slot after the last card")
                << u"auto"_s << u"key Right, Right, Right, Right"_s << u"de: q3|de: q4|de: q5"_s;
        QTest::newRow("not the same card after a shuffle") << u"auto"_s << u"key S"_s << QString();
    }
    void speak()
    {
        QFETCH(QString, setup);
        QFETCH(QString, route);
        QFETCH(QString, said);
        TestEnvironment env;
        startStudying(env, {});
        SpeechSettings settings;
        for (const QString &step : setup.split(u' ', Qt::SkipEmptyParts)) {
            const QStringList two = step.section(u'=', 1).split(u',');
            if (step == u"answer"_s)
                modrender::ToggleAnswer();
            else if (step == u"noengine"_s)
                env.speaker.unavailable = u"No speech engine is installed"_s;
            else if (step == u"auto"_s)
                settings.speakNewCards = true;
            else if (step.startsWith(u"options="_s))
                std::tie(settings.questionLanguage, settings.answerLanguage) = std::tie(two[0], two[1]);
            else if (step.startsWith(u"chapter="_s))
                g_Deck.SetLanguages(u"Kapitel"_s, {two[0], two[1]});
        }
        QVERIFY(cardspeech::ChangeSettings(settings, nullptr));
        press(route);
        QCOMPARE(env.speaker.said.join(u'|'), said);
    }

    // The options' "Speech" page: it shows the saved options, which are in
    // force from the first card on, and keeps every change in its own file at
    // once (or says why it can't, the change in force all the same).
    void speechOptions()
    {
        TestEnvironment env;
        // Kept with the other additions' settings; what is wrong is left out
        // (a language that is none).
        const QString file = env.path(u"extras.conf"_s);
        WriteFileBytes(file,
                       "# by hand\r\nspeech.answer_language = en_gb\nspeech.question_language=fr\n"
                       "speech.speak_new_cards=1\nspeech.other_language=xx\n");
        g_Extras.Load();
        startStudying(env, {});
        QCOMPARE(env.speaker.said, QStringList({u"fr: q0"_s, u"fr: q1"_s, u"fr: q2"_s}));
        frmOptions *options = frmOptions::Instance();
        options->show();
        QTest::mouseClick(options->ts, Qt::LeftButton, {}, options->ts->tabRect(3).center());
        SpeechPage *page = options->PictureSpeech;
        checkLayout(options, u"options-speech"_s); // its page alone, the saved options on it

        const auto choose = [](QComboBox *box, const QString &language) {
            box->setCurrentIndex(box->findData(language));
            Q_EMIT box->activated(box->currentIndex()); // as a person's choice
        };
        choose(page->QuestionLanguage, u"es"_s); // not the default
        choose(page->AnswerLanguage, u"fr"_s);
        QTest::mouseClick(page->SpeakNewCards, Qt::LeftButton, {}, QPoint(8, page->SpeakNewCards->height() / 2));
        QCOMPARE(ReadFileBytes(file),
                 QByteArray("# Vocabrix: settings of the study window's additions\n"
                            "speech.answer_language=fr\nspeech.question_language=es\n"
                            "speech.speak_new_cards=false\nspeech.other_language=xx\n"));
        QVERIFY(QFile::remove(file) && QDir().mkpath(file));
        choose(page->AnswerLanguage, u"es"_s);
        QCOMPARE(std::pair(cardspeech::Settings().questionLanguage, cardspeech::Settings().answerLanguage),
                 std::pair(u"es"_s, u"es"_s));
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Vocabrix Options"_s));
    }

    // The machine's own engine says a word to its end, when it has one. Its
    // speech-dispatcher runs for this test alone (its own folders, the sound
    // going nowhere) and ends with it.
    void speaksForReal()
    {
        TestEnvironment env;
        const QString home = env.home();
        for (const QString &folder : {u".config/speech-dispatcher"_s, u"run"_s, u"log"_s})
            QDir(home).mkpath(folder);
        QFile(home + u"/run"_s).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        WriteFileBytes(home + u"/.config/speech-dispatcher/speechd.conf"_s,
                       "Timeout 1\nAudioOutputMethod \"libao\"\nDefaultModule espeak-ng\nLogLevel 5\nLogDir \""
                               + home.toUtf8() + "/log\"\n");
        WriteFileBytes(home + u"/.libao"_s, "default_driver=null\n");
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", (home + u"/run"_s).toUtf8());
        auto restore = qScopeGuard([&] { qputenv("XDG_RUNTIME_DIR", runtime); });
        // Nothing outlives the test: the daemon it starts ends, taking its pid
        // file along, a second after its last client; or it is ended.
        const QString pidFile = home + u"/run/speech-dispatcher/pid/speech-dispatcher.pid"_s;
        auto reap = qScopeGuard([&] {
            for (int i = 0; i < 150 && QFileInfo::exists(pidFile); ++i)
                QTest::qWait(100);
            if (const qint64 pid = ReadFileBytes(pidFile).trimmed().toLongLong(); pid > 0)
                ::kill(pid_t(pid), SIGKILL);
        });
        {
            QtSpeaker speech;
            if (!speech.Unavailable().isEmpty())
                QSKIP(qPrintable(speech.Unavailable()));
            QSignalSpy started(&speech, &QtSpeaker::Started);
            QSignalSpy spoken(&speech, &QtSpeaker::Spoken);
            QElapsedTimer clock;
            clock.start();
            speech.Say(u"Hallo"_s, u"de"_s);
            QVERIFY(clock.elapsed() < 500); // the engine starts in its own thread
            QTRY_VERIFY_WITH_TIMEOUT(started.count() == 1, 30000);
            QVERIFY2(speech.Unavailable().isEmpty(), qPrintable(speech.Unavailable())); // a plugin found, it starts
            QTRY_VERIFY_WITH_TIMEOUT(spoken.count() == 1, 30000);
            // In the card's language: the daemon's log has what it was asked.
            QVERIFY(ReadFileBytes(home + u"/log/speech-dispatcher.log"_s).contains("SET SELF LANGUAGE de"));
            // The daemon gone: the next card cannot be said, and the program says why.
            ::signal(SIGPIPE, SIG_IGN);
            ::kill(pid_t(ReadFileBytes(pidFile).trimmed().toLongLong()), SIGTERM);
            QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(pidFile), 15000);
            speech.Say(u"Tschüss"_s, u"de"_s);
            QTRY_VERIFY_WITH_TIMEOUT(speech.Unavailable().startsWith(u"The speech engine failed: "_s), 10000);
            QCOMPARE(started.count(), 2);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(pidFile), 15000);
    }
};

QTEST_MAIN(AidsTest)
#include "tst_aids.moc"
