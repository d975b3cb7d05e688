// SPDX-License-Identifier: GPL-3.0-or-later
// Lists of cards imported the way the editor's command line does, as a .txt
// (layout sniffed), a .csv and a .tsv; the list's own header lines (such as
// "#html:true") apply. The first byte chooses the name.
//
// Properties: the reader keeps to its limits; a list that imports exports
// and imports again to the very same chapter; a list that is refused leaves
// the chapter that was there as it was.
#include "cardtext.h"
#include "commandline.h"
#include "fuzzsupport.h"
#include "korva/korvahooks.h"

#include <QBuffer>

#include <cstdint>

namespace {

int run(const QStringList &args)
{
    QBuffer out, err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    return commandline::Run(args, out, err);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *raw, size_t size)
{
    if (size == 0)
        return 0;
    korva::setHooks({});
    static const char *const kNames[] = {"cards.txt", "cards.csv", "cards.tsv"};
    const QString source = fuzz::scratch(QString::fromLatin1(kNames[raw[0] % 3]));
    const QByteArray data(reinterpret_cast<const char *>(raw) + 1, qsizetype(size) - 1);

    cardtext::Layout layout = cardtext::DetectLayout(data, source);
    for (bool html : {layout.html, !layout.html}) {
        layout.html = html;
        int rows = 0;
        QString error;
        cardtext::Parse(
                data, layout,
                [&rows](cardtext::Row &&row, QString *) {
                    fuzz::check(row.fields.size() <= cardtext::kMaxFields, "fields per row");
                    ++rows;
                    return true;
                },
                &error);
        fuzz::check(rows <= cardtext::kMaxRows, "rows");
    }

    const QString chapter = fuzz::scratch(QStringLiteral("out.zel"));
    const QByteArray before("the chapter that was there");
    fuzz::writeFile(source, data);
    fuzz::writeFile(chapter, before);
    if (run({QStringLiteral("import"), source, QStringLiteral("-o"), chapter}) != 0) {
        fuzz::check(fuzz::readFile(chapter) == before, "refused list changes nothing");
        return 0;
    }
    const QByteArray imported = fuzz::readFile(chapter);
    // Tab-separated text cannot carry every card; comma-separated can.
    QString exported = fuzz::scratch(QStringLiteral("back.tsv"));
    if (run({QStringLiteral("export"), chapter, QStringLiteral("-o"), exported}) != 0) {
        exported = fuzz::scratch(QStringLiteral("back.csv"));
        fuzz::check(run({QStringLiteral("export"), chapter, QStringLiteral("-o"), exported}) == 0,
                    "exports as CSV");
    }
    // An export writes no line of column names: its first line is a card,
    // even one such as "Frage\tAntwort" that reads like one.
    const QString again = fuzz::scratch(QStringLiteral("again.zel"));
    fuzz::check(run({QStringLiteral("import"), exported, QStringLiteral("-o"), again,
                     QStringLiteral("--no-header")})
                        == 0,
                "the export imports");
    fuzz::check(fuzz::readFile(again) == imported, "the same chapter again");
    return 0;
}
