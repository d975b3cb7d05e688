// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/prompter.h"

#include <QString>

struct CardSheet;

// The study window's "Print Trouble Cards...": the trouble cards of the
// deck, or all of its cards when it has none and the user agrees, through
// the print dialog on paper or into a PDF file.
namespace printcards {

void PrintTroubleCards();

// Prints the sheet where the dialog said; false with a reason. A PDF file is
// made whole in memory and written through the checked save helper, so a
// full disk leaves no half file.
bool Print(CardSheet sheet, const PrintChoice &choice, QString *error);

} // namespace printcards
