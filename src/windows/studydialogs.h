// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The study window's dialogs: options, find and the item viewer, each made
// when first asked for and shown modeless.
namespace studydialogs {

void ShowOptions();
void ShowFind();
void ViewAllCards();

} // namespace studydialogs
