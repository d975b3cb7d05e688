// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/card.h"
#include "core/prompter.h" // PrintLayout

#include <QByteArray>
#include <QDate>
#include <QPageLayout>
#include <QPageSize>
#include <QStringList>

#include <vector>

class QPagedPaintDevice;

// Cards on paper: a sheet with the chapter names and the date at the top of
// every page and one question | answer row a card, or fold-over cards, a
// strip a card with the question on its left half and the answer on its
// right, to be cut apart and folded down the middle. Texts too long for
// their place are wrapped, then set smaller, and at the smallest size cut
// short with an ellipsis; a row never runs over a page.
struct CardSheet
{
    QStringList chapters;
    QDate date;
    std::vector<Card> cards;
    bool troubleOnly = false; // said under the chapter names
    PrintLayout layout = PrintLayout::Sheet;
};

namespace cardsheet {

// The trouble cards of a deck's cards (without its empty slot), or all of
// them; the chapters in the order they first appear.
CardSheet Select(const std::vector<Card> &cards, bool troubleOnly);

// Paints the sheet on the device, page after page; the number of pages, or
// 0 when the device could not be painted on.
int Paint(QPagedPaintDevice &device, const CardSheet &sheet);

// The sheet as a PDF document; empty when it could not be made.
QByteArray Pdf(const CardSheet &sheet, const QPageSize &paper,
               QPageLayout::Orientation orientation = QPageLayout::Portrait);

// Letter where the region measures in inches (the United States), else A4.
QPageSize DefaultPaper();

} // namespace cardsheet
