// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline.h"

#include "cards/chapterlanguages.h"
#include "cardtext.h"
#include "chapterrules.h"
#include "drawing/cardsheet.h"
#include "headerrow.h"
#include "korva/chapterformat.h"
#include "korva/diskfile.h"
#include "korva/ikorvalite.h"
#include "korvajson.h"
#include "printcommand.h"
#include "settings/speechsettings.h"

#include <QFileInfo>
#include <QIODevice>

#include <optional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace commandline {

namespace {

// A list of 32,767 cards is a few megabytes; this keeps a wrong file from
// being read whole.
constexpr qint64 kMaxSourceSize = 64 * 1024 * 1024;

const QString kUsage =
        u"usage: vxedit [FILE.zel]\n"
        "       vxedit dump FILE\n"
        "       vxedit import SOURCE.tsv|SOURCE.csv -o OUT.zel [--title TITLE]\n"
        "                     [--header | --no-header]\n"
        "       vxedit export FILE.zel [-o OUT.tsv|OUT.csv]\n"
        "       vxedit print FILE.zel|FILE.vxs -o OUT.pdf [--trouble-only] [--fold]\n"
        "       vxedit languages FILE.zel [--set QUESTION,ANSWER | --clear]\n"
        "       vxedit --help | --version\n"_s;

const QStringList kVerbs {u"dump"_s, u"import"_s, u"export"_s, u"print"_s, u"languages"_s};

// What the first line of a list is: column names or a card, or whichever it
// looks like.
enum class FirstLine { Detect, Header, Card };

class Session
{
public:
    Session(QIODevice &out, QIODevice &err) : m_out(out), m_err(err) {}

    int fail(const QString &where, const QString &why)
    {
        m_err.write((u"vxedit: "_s + where + u": "_s + why + u'\n').toUtf8());
        return 1;
    }
    int usage(const QString &why)
    {
        m_err.write((u"vxedit: "_s + why + u"\n"_s + kUsage).toUtf8());
        return 2;
    }

    int dump(const QString &path);
    int import(const QString &source, const QString &target, const QString &title,
               FirstLine firstLine);
    int exportCards(const QString &path, const QString &target);
    int print(const QString &path, const QString &target, bool troubleOnly, bool fold);
    int languages(const QString &path, const std::optional<ChapterLanguages> &set);

private:
    bool mount(const QString &path, ikorvalite &db, int &status);
    // mount(), and the file must be a chapter.
    bool mountChapter(const QString &path, ikorvalite &db, int &status);

    QIODevice &m_out;
    QIODevice &m_err;
};

bool Session::mountChapter(const QString &path, ikorvalite &db, int &status)
{
    if (!mount(path, db, status))
        return false;
    if (db.Description() == korva::kChapterDescription)
        return true;
    status = fail(path, u"not a chapter file (its description is '%1')"_s.arg(db.Description()));
    return false;
}

bool Session::mount(const QString &path, ikorvalite &db, int &status)
{
    // Mounting a missing file would create it: look first.
    const korva::PathInfo info = korva::inspectPath(path);
    if (info.kind != korva::PathKind::Regular) {
        status = fail(path,
                      info.kind == korva::PathKind::Missing ? u"no such file"_s
                                                            : korva::notAFileReason(info));
        return false;
    }
    if (!db.Mount(path, false)) {
        status = fail(path, u"not a KORVA file, or a damaged one: "_s + db.LastError());
        return false;
    }
    return true;
}

int Session::dump(const QString &path)
{
    ikorvalite db;
    int status = 0;
    if (!mount(path, db, status))
        return status;
    m_out.write(KorvaToJson(db));
    return 0;
}

int Session::import(const QString &source, const QString &target, const QString &title,
                    FirstLine firstLine)
{
    if (korva::sameFile(source, target))
        return fail(target,
                    u"the output is the list being imported; write the chapter to "
                    "another file"_s);
    QByteArray data;
    QString readError;
    switch (korva::readFile(source, kMaxSourceSize, data, &readError)) {
    case korva::ReadStatus::Ok:
        break;
    case korva::ReadStatus::TooLarge:
        return fail(source, u"the file is too large for a list of cards"_s);
    case korva::ReadStatus::Missing:
    case korva::ReadStatus::Failed:
        return fail(source, readError);
    }

    // The chapter is Windows-1252 until a text that it cannot hold makes it
    // UTF-8; from then on every card counts its bytes in UTF-8.
    korva::Encoding encoding = chapterrules::CardEncoding(chapterrules::CardEntry(title, {}, {}),
                                                          korva::Encoding::Cp1252);
    const QString titleProblem = chapterrules::CheckTitle(title, encoding);
    if (!titleProblem.isEmpty())
        return fail(source, titleProblem);

    const cardtext::Layout layout = cardtext::DetectLayout(data, source);
    const QString separator = layout.delimiter == u'\t' ? u"a tab"_s
            : layout.delimiter == u','                  ? u"a comma"_s
                                                        : u"'%1'"_s.arg(layout.delimiter);
    ikorvalite db;
    db.SetDescription(korva::kChapterDescription);
    db.SetTitle(title);
    db.SetFormat(4);
    std::vector<int> lines; // where each card came from, should the chapter turn UTF-8
    // Each card is checked and kept as it is read, so a long list is never
    // held twice, and one that cannot become a chapter stops at its first
    // problem.
    bool first = true;
    auto takeCard = [&](cardtext::Row &&row, QString *why) {
        if (std::exchange(first, false) && firstLine != FirstLine::Card) {
            const bool names =
                    firstLine == FirstLine::Header || headerrow::Detect(row.fields, layout);
            // A guess is told, so that a card taken for column names is not lost unseen.
            if (names && firstLine == FirstLine::Detect)
                m_err.write(u"vxedit: %1: line %2 is taken as column names, not a card "
                            "(--no-header reads it as a card)\n"_s
                                    .arg(source, QString::number(row.line))
                                    .toUtf8());
            if (names)
                return true;
        }
        auto refuse = [&](int line, const QString &problem) {
            *why = u"line "_s + QString::number(line) + u": "_s + problem;
            return false;
        };
        // Bookkeeping columns of another program's export are not card text.
        for (qsizetype i = row.fields.size() - 1; i >= 0; --i) {
            if (layout.metaColumns.contains(int(i)))
                row.fields.removeAt(i);
        }
        if (row.fields.size() < 2)
            return refuse(row.line,
                          u"a card needs a question and an answer separated by "_s + separator);
        for (qsizetype i = 3; i < row.fields.size(); ++i) {
            if (!row.fields[i].isEmpty())
                return refuse(row.line,
                              u"a card has three fields at most (question, answer, note); "
                              "this line has %1"_s.arg(row.fields.size()));
        }
        const korva::Entry card =
                chapterrules::CardEntry(row.fields[0], row.fields[1], row.fields.value(2));
        if (chapterrules::CardEncoding(card, encoding) != encoding) {
            // The cards before were checked in Windows-1252: again, in UTF-8.
            encoding = korva::Encoding::Utf8;
            const QString titleUtf8 = chapterrules::CheckTitle(title, encoding);
            if (!titleUtf8.isEmpty())
                return refuse(row.line, titleUtf8 + u" (this card makes the chapter UTF-8)"_s);
            for (int i = db.FirstIndex(); i <= db.LastIndex(); ++i) {
                const korva::Entry before = db.GetEntry(i);
                const QString problem =
                        chapterrules::CheckCard(before.key, before.text, before.note, encoding);
                if (!problem.isEmpty())
                    return refuse(lines[size_t(i - 1)],
                                  problem + u" (line %1 makes the chapter UTF-8)"_s.arg(row.line));
            }
        }
        const QString problem = chapterrules::CheckCard(card.key, card.text, card.note, encoding);
        if (!problem.isEmpty())
            return refuse(row.line, problem);
        if (db.LastIndex() >= korva::kMaxEntries)
            return refuse(row.line,
                          u"more than %1 cards; a chapter holds %1 at most"_s.arg(
                                  korva::kMaxEntries));
        db.AppendEntry(card);
        lines.push_back(row.line);
        return true;
    };
    QString error;
    if (!cardtext::Parse(data, layout, takeCard, &error))
        return fail(source, error);

    const int cards = db.LastIndex();
    if (cards < 2)
        return fail(source,
                    cards == 0 ? u"no cards found"_s
                               : u"only one card; a chapter needs two to be studied"_s);

    if (!db.SaveAs(target))
        return fail(target, db.LastError() + u"; nothing was written"_s);
    return 0;
}

int Session::exportCards(const QString &path, const QString &target)
{
    if (!target.isEmpty() && korva::sameFile(path, target))
        return fail(target,
                    u"the output is the chapter being exported; write the cards to "
                    "another file"_s);
    ikorvalite db;
    int status = 0;
    if (!mountChapter(path, db, status))
        return status;

    QByteArray bytes;
    QString error;
    int bad = 0;
    const std::vector<korva::Entry> &entries = db.Entries();
    if (!cardtext::FormatCards(entries.data() + 1, qsizetype(entries.size()) - 1,
                               cardtext::FormatForPath(target), bytes, &bad, &error))
        return fail(path, u"card %1: "_s.arg(bad) + error);
    if (target.isEmpty()) {
        m_out.write(bytes);
        return 0;
    }
    if (!korva::saveFile(target, bytes, &error))
        return fail(target, error + u"; nothing was written"_s);
    return 0;
}

int Session::print(const QString &path, const QString &target, bool troubleOnly, bool fold)
{
    printcommand::Source source;
    QString error;
    if (!printcommand::Read(path, source, &error))
        return fail(path, error);
    if (troubleOnly && !source.troubleMarks)
        return fail(path,
                    u"a chapter file keeps no trouble marks (a progress file does); leave "
                    "out --trouble-only to print every card"_s);
    CardSheet sheet = cardsheet::Select(source.cards, troubleOnly);
    if (sheet.cards.empty())
        return fail(path,
                    troubleOnly ? u"no card is marked as a trouble card; leave out "
                                  "--trouble-only to print all %1"_s.arg(source.cards.size())
                                : u"it holds no cards"_s);
    sheet.layout = fold ? PrintLayout::Fold : PrintLayout::Sheet;
    const QByteArray pdf = cardsheet::Pdf(sheet, cardsheet::DefaultPaper());
    if (pdf.isEmpty())
        return fail(target, u"the pages could not be made; nothing was written"_s);
    if (!korva::saveFile(target, pdf, &error))
        return fail(target, error + u"; nothing was written"_s);
    return 0;
}

int Session::languages(const QString &path, const std::optional<ChapterLanguages> &set)
{
    ikorvalite db;
    int status = 0;
    if (!mountChapter(path, db, status))
        return status;
    QString error;
    if (set) {
        if (!chapterlanguages::Write(path, *set, &error))
            return fail(chapterlanguages::FilePath(path), error + u"; nothing was written"_s);
        return 0;
    }
    ChapterLanguages kept;
    if (!chapterlanguages::Read(path, kept, &error))
        return fail(path, error);
    if (!kept.question.isEmpty())
        m_out.write("question=" + kept.question.toUtf8() + '\n');
    if (!kept.answer.isEmpty())
        m_out.write("answer=" + kept.answer.toUtf8() + '\n');
    return 0;
}

} // namespace

bool IsCommandLine(const QStringList &args)
{
    if (args.isEmpty())
        return false;
    // A file for the window is one that exists, or anything that looks like a
    // path or a file name (the window then says what is wrong with it). The
    // rest is a verb, known or mistyped, and is answered without a display.
    const QString &first = args.first();
    if (kVerbs.contains(first) || first.startsWith(u'-'))
        return true;
    const QFileInfo info(first);
    return !(info.exists() || first.contains(u'/') || first.contains(u'\\')
             || !info.suffix().isEmpty());
}

bool NeedsFonts(const QStringList &args)
{
    return !args.isEmpty() && args.first() == u"print"_s;
}

int Run(const QStringList &args, QIODevice &out, QIODevice &err)
{
    Session session(out, err);
    if (args.isEmpty())
        return session.usage(u"nothing to do"_s);
    const QString verb = args.first();
    if (verb == u"--help"_s || verb == u"-h"_s) {
        out.write(kUsage.toUtf8());
        return 0;
    }
    if (verb == u"--version"_s) {
        out.write("vxedit " VXEDIT_VERSION "\n");
        return 0;
    }
    if (!kVerbs.contains(verb))
        return session.usage((verb.startsWith(u'-') ? u"unknown option "_s : u"unknown command "_s)
                             + verb);

    // Options after the verb: -o PATH, --title TEXT, --set LANGUAGES and the
    // flags; one positional file.
    QString file, output, title, languages;
    bool hasOutput = false, hasLanguages = false;
    QStringList flags;
    const QStringList knownFlags {u"--trouble-only"_s, u"--fold"_s, u"--clear"_s, u"--header"_s,
                                  u"--no-header"_s};
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString &a = args[i];
        if (a == u"-o"_s || a == u"--title"_s || a == u"--set"_s) {
            if (i + 1 >= args.size())
                return session.usage(a + u" needs a value"_s);
            (a == u"-o"_s ? output : a == u"--set"_s ? languages : title) = args[++i];
            hasOutput = hasOutput || a == u"-o"_s;
            hasLanguages = hasLanguages || a == u"--set"_s;
        } else if (knownFlags.contains(a)) {
            flags << a;
        } else if (a.startsWith(u'-') && a.size() > 1) {
            return session.usage(u"unknown option "_s + a);
        } else if (file.isEmpty()) {
            file = a;
        } else {
            return session.usage(u"one file at a time"_s);
        }
    }
    if (file.isEmpty())
        return session.usage(verb + u" needs a file"_s);
    const bool header = flags.contains(u"--header"_s), noHeader = flags.contains(u"--no-header"_s);
    if ((header || noHeader) && verb != u"import"_s)
        return session.usage(u"only import takes --header and --no-header"_s);
    if (header && noHeader)
        return session.usage(u"--header and --no-header exclude each other; leave both out to "
                             "have the first line checked for column names"_s);

    const bool printFlags = flags.contains(u"--trouble-only"_s) || flags.contains(u"--fold"_s);
    if (verb == u"print"_s) {
        if (!hasOutput || output.isEmpty())
            return session.usage(u"print needs -o OUT.pdf"_s);
        if (!title.isEmpty() || hasLanguages || flags.contains(u"--clear"_s))
            return session.usage(u"print takes -o, --trouble-only and --fold"_s);
        return session.print(file, output, flags.contains(u"--trouble-only"_s),
                             flags.contains(u"--fold"_s));
    }
    if (verb == u"languages"_s) {
        const bool clear = flags.contains(u"--clear"_s);
        if (hasOutput || !title.isEmpty() || printFlags || (clear && hasLanguages))
            return session.usage(u"languages takes --set QUESTION,ANSWER or --clear"_s);
        if (!hasLanguages && !clear)
            return session.languages(file, std::nullopt);
        ChapterLanguages set;
        const QStringList sides = languages.split(u',');
        if (hasLanguages && sides.size() != 2)
            return session.usage(u"--set takes QUESTION,ANSWER, such as de,en (either may "
                                 "be left empty)"_s);
        for (int side = 0; hasLanguages && side < 2; ++side) {
            const QString tag = NormalizeLanguageTag(sides[side]);
            if (tag.isEmpty() && !sides[side].trimmed().isEmpty())
                return session.usage(
                        u"'%1' is not a language (try a tag such as de or en-GB)"_s.arg(
                                sides[side]));
            (side == 0 ? set.question : set.answer) = tag;
        }
        return session.languages(file, set);
    }
    if (printFlags || hasLanguages || flags.contains(u"--clear"_s))
        return session.usage(verb + u" takes none of --trouble-only, --fold, --set, --clear"_s);

    if (verb == u"dump"_s) {
        if (hasOutput || !title.isEmpty())
            return session.usage(u"dump takes only a file"_s);
        return session.dump(file);
    }
    if (verb == u"import"_s) {
        if (!hasOutput || output.isEmpty())
            return session.usage(u"import needs -o OUT.zel"_s);
        return session.import(file, output, title,
                              header             ? FirstLine::Header
                                      : noHeader ? FirstLine::Card
                                                 : FirstLine::Detect);
    }
    if (!title.isEmpty())
        return session.usage(u"export takes no title"_s);
    return session.exportCards(file, output);
}

} // namespace commandline
