// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/cardsheet.h"
#include "drawing/logicalfont.h"
#include "pdftext.h"
#include "screens.h"
#include "testsupport.h"

#include <QCryptographicHash>
#include <QImage>
#include <QLocale>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<Card> cards(int count, const QString &firstAnswer = {})
{
    std::vector<Card> out;
    for (int i = 0; i < count; ++i) {
        Card c;
        c.question = u"Frage%1"_s.arg(i);
        c.answer = i == 0 && !firstAnswer.isEmpty() ? firstAnswer : u"Antwort%1"_s.arg(i);
        c.chapter = u"Kapitel"_s;
        out.push_back(c);
    }
    return out;
}

// Page one as a picture.
QImage firstPage(const QByteArray &pdf, const QStringList &options)
{
    QTemporaryDir dir;
    WriteFileBytes(dir.filePath(u"sheet.pdf"_s), pdf);
    QProcess::execute(u"pdftoppm"_s,
                      options
                              + QStringList {u"-png"_s, u"-f"_s, u"1"_s, u"-l"_s, u"1"_s, dir.filePath(u"sheet.pdf"_s),
                                             dir.filePath(u"page"_s)});
    return QImage(dir.filePath(u"page-1.png"_s));
}

} // namespace

class CardSheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }

    // The sheet printed and read back: the header and page number on every
    // page; every card once, in order, its question in the left column (or
    // half) and its answer in the right, on one row of one page. A text too
    // long for its place, at the smallest size, is cut short with an ellipsis.
    void paper_data()
    {
        QTest::addColumn<bool>("fold");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("firstAnswer");
        QTest::addColumn<int>("pages");
        QTest::addColumn<bool>("cutShort");
        const QString words = QStringList(40, u"Wort"_s).join(u' ');
        const QString flood = QStringList(900, u"Wort"_s).join(u' ');
        QTest::newRow("sheet of 70, a long answer") << false << 70 << words << 3 << false;
        QTest::newRow("fold: five strips a page") << true << 12 << QString() << 3 << false;
        QTest::newRow("fold: too long for its strip, cut short") << true << 2 << flood << 1 << true;
    }
    void paper()
    {
        QFETCH(bool, fold);
        QFETCH(int, count);
        QFETCH(QString, firstAnswer);
        QFETCH(int, pages);
        QFETCH(bool, cutShort);
        CardSheet sheet = cardsheet::Select(cards(count, firstAnswer), false);
        sheet.layout = fold ? PrintLayout::Fold : PrintLayout::Sheet;
        sheet.date = QDate(2026, 11, 21);
        const QByteArray bytes = cardsheet::Pdf(sheet, QPageSize(QPageSize::A4));
        const PdfText pdf = ReadPdfBytes(bytes);
        QVERIFY2(pdf.read, "pdftotext (poppler-utils, see scripts/install-deps.sh) could not read it");
        QCOMPARE(pdf.pages, pages);
        const QString date = QLocale().toString(sheet.date, QLocale::LongFormat);
        const QString counted = u" %1 cards "_s.arg(count);
        for (int p = 1; p <= pages; ++p) {
            const QString page = pdf.page(p);
            QVERIFY2(page.contains(u"Kapitel"_s) && page.contains(date) && page.contains(counted), qPrintable(page));
            QVERIFY(page.endsWith(u" Page %1 of %2"_s.arg(p).arg(pages)));
        }

        QMultiHash<QString, PdfWord> at;
        for (const PdfWord &w : pdf.words)
            at.insert(w.text, w);
        QPair<int, qreal> last {0, 0};
        for (int i = 0; i < count; ++i) {
            const QList<PdfWord> q = at.values(u"Frage%1"_s.arg(i)), a = at.values(u"Antwort%1"_s.arg(i));
            QCOMPARE(q.size(), 1);
            QVERIFY(q[0].box.right() <= q[0].pageWidth / 2 && qMakePair(q[0].page, q[0].box.top()) > last);
            last = {q[0].page, q[0].box.top()};
            if (i == 0 && !firstAnswer.isEmpty())
                continue;
            QCOMPARE(a.size(), 1);
            QVERIFY(a[0].box.left() >= a[0].pageWidth / 2 && a[0].page == q[0].page);
            QVERIFY(qAbs(a[0].box.top() - q[0].box.top()) < 1);
        }
        // How a long answer wraps shows in pagesAsDesigned.
        int cut = 0;
        for (const PdfWord &w : pdf.words)
            cut += w.text.size() > 1 && w.text.endsWith(u'\u2026') ? 1 : 0; // text, then the ellipsis
        QCOMPARE(cut, cutShort ? 1 : 0);
    }

    // Page one of each layout, pixel for pixel as designed and reviewed (the
    // header's rule 0.4 mm thick, a fold's first cut line 4.5 mm below it). A
    // deliberate change: look at the page saved as its screenshot, then put
    // its new digest here.
    void pagesAsDesigned_data()
    {
        QTest::addColumn<bool>("fold");
        QTest::addColumn<QString>("digest");
        QTest::newRow("sheet") << false << u"2a2b6bdfabdeaa56"_s;
        QTest::newRow("fold") << true << u"65789f395c3138d9"_s;
    }
    void pagesAsDesigned()
    {
        QFETCH(bool, fold);
        QFETCH(QString, digest);
        // A first answer of 30 words, wrapped over several lines.
        CardSheet sheet = cardsheet::Select(cards(12, QStringList(30, u"Wort"_s).join(u' ')), false);
        sheet.layout = fold ? PrintLayout::Fold : PrintLayout::Sheet;
        sheet.date = QDate(2026, 11, 21);
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); // the date as on any machine
        const QByteArray pdf = cardsheet::Pdf(sheet, QPageSize(QPageSize::A4));
        QLocale::setDefault(QLocale::system());
        // The whole page, and its top (the header and first rows) at the
        // printer's own 300 dpi, where a shift of one dot shows.
        const QImage page = firstPage(pdf, {u"-r"_s, u"100"_s}).convertToFormat(QImage::Format_RGB32);
        const QImage top = firstPage(pdf, QString(u"-r 300 -x 0 -y 0 -W 2480 -H 1000"_s).split(u' '))
                                   .convertToFormat(QImage::Format_RGB32);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        for (const QImage *image : {&page, &top})
            hash.addData(QByteArrayView(image->constBits(), image->sizeInBytes()));
        const QString actual = QString::fromLatin1(hash.result().toHex().left(16));
        QVERIFY(SaveScreenshot(page, fold ? u"print-fold.png"_s : u"print-sheet.png"_s));
        QCOMPARE(actual, digest);
    }
};

QTEST_MAIN(CardSheetTest)
#include "tst_cardsheet.moc"
