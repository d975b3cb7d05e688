// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/cardsheet.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QTextLayout>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace cardsheet {

namespace {

// A text laid out in lines of a given width, as much of it as fits a height.
struct Block
{
    std::shared_ptr<QTextLayout> layout;
    QFont font;
    qreal width = 0;
    qreal height = 0;
    int lines = 0;    // lines drawn
    QString cutShort; // when it did not fit: the last line drawn, ending in "…"

    void draw(QPainter &painter, QPointF at) const
    {
        const int whole = cutShort.isEmpty() ? lines : lines - 1;
        for (int i = 0; i < whole; ++i)
            layout->lineAt(i).draw(&painter, at);
        if (cutShort.isEmpty())
            return;
        const QTextLine last = layout->lineAt(lines - 1);
        painter.setFont(font);
        painter.drawText(QRectF(at.x(), at.y() + last.y(), width, last.height()),
                         int(layout->textOption().alignment()) | Qt::TextSingleLine, cutShort);
    }
};

Block layOut(const QString &text, const QFont &font, qreal width, Qt::Alignment align,
             QPaintDevice *device)
{
    QString flat = text;
    flat.replace(u"\r\n"_s, QString(QChar::LineSeparator)).replace(u'\n', QChar::LineSeparator);
    flat.replace(u'\r', QChar::LineSeparator);
    Block b;
    b.layout = std::make_shared<QTextLayout>(flat, font, device);
    b.font = font;
    b.width = width;
    QTextOption option(align);
    // A word longer than the column breaks where it must rather than running over.
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    b.layout->setTextOption(option);
    b.layout->beginLayout();
    for (QTextLine line = b.layout->createLine(); line.isValid(); line = b.layout->createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, b.height));
        b.height += line.height();
        ++b.lines;
    }
    b.layout->endLayout();
    return b;
}

// The text at the largest size from maxPt down to minPt that fits the height;
// at minPt, the lines that fit with the last one cut short.
Block fit(const QString &text, QFont font, qreal width, qreal maxHeight, qreal maxPt, qreal minPt,
          Qt::Alignment align, QPaintDevice *device)
{
    Block b;
    for (qreal pt = maxPt;; pt = qMax(minPt, pt - 1)) {
        font.setPointSizeF(pt);
        b = layOut(text, font, width, align, device);
        if (b.height <= maxHeight || pt <= minPt)
            break;
    }
    if (b.height <= maxHeight)
        return b;
    int keep = 0;
    qreal height = 0;
    while (keep < b.lines && height + b.layout->lineAt(keep).height() <= maxHeight)
        height += b.layout->lineAt(keep++).height();
    keep = qMax(keep, 1);
    const QTextLine last = b.layout->lineAt(keep - 1);
    const QString rest = b.layout->text().mid(last.textStart()).simplified();
    b.cutShort = QFontMetricsF(font, device).elidedText(rest + u"\u2026"_s, Qt::ElideRight, width);
    // elidedText leaves a text that fits alone: the ellipsis shows it goes on.
    if (!b.cutShort.endsWith(u'\u2026'))
        b.cutShort += u'\u2026';
    b.lines = keep;
    b.height = qMax(height, last.height());
    return b;
}

// Lengths on paper, in the device's pixels.
class Paper
{
public:
    explicit Paper(QPagedPaintDevice &device) : m_device(device) {}
    qreal mm(qreal millimetres) const { return millimetres * m_device.logicalDpiY() / 25.4; }
    qreal width() const { return m_device.width(); }
    qreal height() const { return m_device.height(); }
    QPaintDevice *device() const { return &m_device; }

private:
    QPagedPaintDevice &m_device;
};

QFont baseFont()
{
    QFont font(u"Tahoma"_s);
    font.setStyleHint(QFont::SansSerif);
    return font;
}

// What every page starts with: the chapter names (what was printed under
// them) and the date; and ends with: the page number.
class Frame
{
public:
    Frame(const Paper &paper, const CardSheet &sheet) : m_paper(paper)
    {
        QFont small = baseFont();
        small.setPointSizeF(9);
        const QString date = QLocale().toString(sheet.date, QLocale::LongFormat);
        m_date = layOut(date, small, paper.width() / 3, Qt::AlignRight, paper.device());
        const qreal namesWidth = paper.width() - m_date.layout->maximumWidth() - paper.mm(6);
        QFont bold = baseFont();
        bold.setBold(true);
        const QString names =
                sheet.chapters.isEmpty() ? u"Vocabrix"_s : sheet.chapters.join(u", "_s);
        m_names = fit(names, bold, namesWidth, paper.mm(16), 14, 8, Qt::AlignLeft, paper.device());
        const int count = int(sheet.cards.size());
        const QString what = sheet.troubleOnly
                ? (count == 1 ? u"1 trouble card"_s : u"%1 trouble cards"_s.arg(count))
                : (count == 1 ? u"1 card"_s : u"%1 cards"_s.arg(count));
        m_what = layOut(what, small, namesWidth, Qt::AlignLeft, paper.device());
        m_top = qMax(m_names.height + paper.mm(1) + m_what.height, m_date.height) + paper.mm(3);
        QFont footer = baseFont();
        footer.setPointSizeF(8);
        m_footerFont = footer;
        m_bottom = paper.height() - QFontMetricsF(footer, paper.device()).height() - paper.mm(3);
    }

    // Where the cards go.
    qreal top() const { return m_top; }
    qreal bottom() const { return m_bottom; }

    void paint(QPainter &painter, int page, int pages) const
    {
        painter.setPen(Qt::black);
        m_names.draw(painter, QPointF(0, 0));
        painter.setPen(QColor(0x55, 0x55, 0x55));
        m_what.draw(painter, QPointF(0, m_names.height + m_paper.mm(1)));
        m_date.draw(painter, QPointF(m_paper.width() - m_date.width, 0));
        painter.setPen(QPen(Qt::black, m_paper.mm(0.4)));
        const qreal rule = m_top - m_paper.mm(1.5);
        painter.drawLine(QPointF(0, rule), QPointF(m_paper.width(), rule));
        painter.setPen(QColor(0x55, 0x55, 0x55));
        painter.setFont(m_footerFont);
        painter.drawText(QRectF(0, m_bottom, m_paper.width(), m_paper.height() - m_bottom),
                         Qt::AlignHCenter | Qt::AlignBottom,
                         u"Page %1 of %2"_s.arg(page).arg(pages));
    }

private:
    const Paper &m_paper;
    Block m_names, m_what, m_date;
    QFont m_footerFont;
    qreal m_top = 0, m_bottom = 0;
};

struct Row
{
    Block question, answer;
    qreal height = 0;
};

// Pages of rows: each row as high as its longer side, at most a quarter of
// the page's room, so a long card is set smaller rather than split.
int paintSheet(QPainter &painter, QPagedPaintDevice &device, const Paper &paper, const Frame &frame,
               const CardSheet &sheet)
{
    const qreal pad = paper.mm(2);
    const qreal column = paper.width() / 2;
    const qreal textWidth = column - 2 * pad;
    const qreal room = frame.bottom() - frame.top();
    std::vector<Row> rows;
    for (const Card &card : sheet.cards) {
        Row row;
        const qreal most = room / 4 - 2 * pad;
        row.question = fit(card.question, baseFont(), textWidth, most, 12, 7, Qt::AlignLeft,
                           paper.device());
        row.answer =
                fit(card.answer, baseFont(), textWidth, most, 12, 7, Qt::AlignLeft, paper.device());
        row.height = qMax(row.question.height, row.answer.height) + 2 * pad;
        rows.push_back(row);
    }
    std::vector<size_t> firstOfPage {0};
    qreal used = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (used > 0 && frame.top() + used + rows[i].height > frame.bottom()) {
            firstOfPage.push_back(i);
            used = 0;
        }
        used += rows[i].height;
    }
    const int pages = int(firstOfPage.size());
    for (int page = 0; page < pages; ++page) {
        if (page > 0 && !device.newPage())
            return 0;
        frame.paint(painter, page + 1, pages);
        const size_t end = page + 1 < pages ? firstOfPage[size_t(page) + 1] : rows.size();
        qreal y = frame.top();
        for (size_t i = firstOfPage[size_t(page)]; i < end; ++i) {
            painter.setPen(Qt::black);
            rows[i].question.draw(painter, QPointF(pad, y + pad));
            rows[i].answer.draw(painter, QPointF(column + pad, y + pad));
            y += rows[i].height;
            painter.setPen(QPen(QColor(0xA0, 0xA0, 0xA0), paper.mm(0.2)));
            painter.drawLine(QPointF(0, y), QPointF(paper.width(), y));
        }
        painter.drawLine(QPointF(column, frame.top()), QPointF(column, y));
    }
    return pages;
}

// Strips of equal height, about 45 mm, the fold down the middle and a cut
// line between them; each half's text as large as fits.
int paintFold(QPainter &painter, QPagedPaintDevice &device, const Paper &paper, const Frame &frame,
              const CardSheet &sheet)
{
    // A little room under the header, so the first cut line stands apart from its rule.
    const qreal top = frame.top() + paper.mm(3);
    const qreal room = frame.bottom() - top;
    const int perPage = qMax(1, int(room / paper.mm(45)));
    const qreal strip = room / perPage;
    const qreal half = paper.width() / 2;
    const qreal pad = paper.mm(5);
    const int cards = int(sheet.cards.size());
    const int pages = qMax(1, (cards + perPage - 1) / perPage);
    const QPen cut(QColor(0x80, 0x80, 0x80), paper.mm(0.25), Qt::DashLine);
    const QPen fold(QColor(0x80, 0x80, 0x80), paper.mm(0.25), Qt::DotLine);
    for (int page = 0; page < pages; ++page) {
        if (page > 0 && !device.newPage())
            return 0;
        frame.paint(painter, page + 1, pages);
        const int first = page * perPage, end = qMin(cards, first + perPage);
        for (int i = first; i < end; ++i) {
            const qreal y = top + (i - first) * strip;
            const Card &card = sheet.cards[size_t(i)];
            const QString sides[] = {card.question, card.answer};
            for (int side = 0; side < 2; ++side) {
                const Block b = fit(sides[side], baseFont(), half - 2 * pad, strip - 2 * pad, 20, 7,
                                    Qt::AlignHCenter, paper.device());
                painter.setPen(Qt::black);
                b.draw(painter, QPointF(side * half + pad, y + (strip - b.height) / 2));
            }
            painter.setPen(cut);
            painter.drawLine(QPointF(0, y + strip), QPointF(paper.width(), y + strip));
            if (i == first)
                painter.drawLine(QPointF(0, y), QPointF(paper.width(), y));
        }
        painter.setPen(fold);
        painter.drawLine(QPointF(half, top), QPointF(half, top + (end - first) * strip));
    }
    return pages;
}

} // namespace

CardSheet Select(const std::vector<Card> &cards, bool troubleOnly)
{
    CardSheet sheet;
    sheet.troubleOnly = troubleOnly;
    sheet.date = QDate::currentDate();
    for (const Card &card : cards) {
        if (troubleOnly && !card.isTrouble())
            continue;
        sheet.cards.push_back(card);
        if (!card.chapter.isEmpty() && !sheet.chapters.contains(card.chapter))
            sheet.chapters << card.chapter;
    }
    return sheet;
}

int Paint(QPagedPaintDevice &device, const CardSheet &sheet)
{
    QPainter painter;
    if (!painter.begin(&device))
        return 0;
    painter.setRenderHint(QPainter::Antialiasing);
    const Paper paper(device);
    const Frame frame(paper, sheet);
    const int pages = sheet.layout == PrintLayout::Fold
            ? paintFold(painter, device, paper, frame, sheet)
            : paintSheet(painter, device, paper, frame, sheet);
    return painter.end() ? pages : 0;
}

QByteArray Pdf(const CardSheet &sheet, const QPageSize &paper, QPageLayout::Orientation orientation)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(300);
    writer.setPageLayout(
            QPageLayout(paper, orientation, QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter));
    writer.setCreator(u"Vocabrix"_s);
    writer.setTitle(sheet.chapters.join(u", "_s));
    if (Paint(writer, sheet) == 0)
        return QByteArray();
    return bytes;
}

QPageSize DefaultPaper()
{
    return QPageSize(QLocale().measurementSystem() == QLocale::ImperialUSSystem ? QPageSize::Letter
                                                                                : QPageSize::A4);
}

} // namespace cardsheet
