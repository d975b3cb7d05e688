// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/printcards.h"

#include "cards/deck.h"
#include "core/programstate.h"
#include "drawing/cardsheet.h"
#include "korva/diskfile.h"

#include <QDir>
#include <QPrinter>

using namespace Qt::Literals::StringLiterals;

namespace printcards {

namespace {

const QString kTitle = u"Print Trouble Cards"_s;

} // namespace

bool Print(CardSheet sheet, const PrintChoice &choice, QString *error)
{
    sheet.layout = choice.layout;
    const QPageSize paper = choice.paperMillimetres.isEmpty()
            ? cardsheet::DefaultPaper()
            : QPageSize(choice.paperMillimetres, QPageSize::Millimeter);
    const auto orientation = choice.landscape ? QPageLayout::Landscape : QPageLayout::Portrait;
    if (choice.target == PrintTarget::PdfFile) {
        const QByteArray pdf = cardsheet::Pdf(sheet, paper, orientation);
        if (pdf.isEmpty()) {
            if (error)
                *error = u"the pages could not be made"_s;
            return false;
        }
        return korva::saveFile(choice.pdfFile, pdf, error);
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setPrinterName(choice.printerName);
    printer.setPageSize(paper);
    printer.setPageOrientation(orientation);
    printer.setCopyCount(qMax(1, choice.copies));
    printer.setDocName(kTitle);
    if (!printer.isValid() || cardsheet::Paint(printer, sheet) == 0) {
        if (error)
            *error = u"the printer '%1' did not take the pages"_s.arg(choice.printerName);
        return false;
    }
    return true;
}

void PrintTroubleCards()
{
    const std::vector<Card> &all = g_Deck.cards();
    // The deck's last slot is empty, not a card.
    const std::vector<Card> cards(all.begin(), all.end() - 1);
    if (cards.empty())
        return;
    CardSheet sheet = cardsheet::Select(cards, true);
    if (sheet.cards.empty()) {
        const QString text =
                u"No card is marked as a trouble card. Print all %1 cards instead?"_s.arg(
                        cards.size());
        if (MsgBox(kTitle, text, MsgIcon::Question, MsgButtons::YesNo) != MsgResult::Yes)
            return;
        sheet = cardsheet::Select(cards, false);
    }
    const std::optional<PrintChoice> choice = prompter().AskPrint(
            {kTitle, QDir(g_BaseDirectory).filePath(u"trouble-cards.pdf"_s), PrintLayout::Sheet});
    if (!choice)
        return;
    QString error;
    if (!Print(sheet, *choice, &error)) {
        const QString what = choice->target == PrintTarget::PdfFile
                ? u"The file '%1' couldn't be written: "_s.arg(choice->pdfFile)
                : u"Nothing was printed: "_s;
        MsgBox(kTitle, what + error + u'.', MsgIcon::Exclamation, MsgButtons::OK);
    }
}

} // namespace printcards
