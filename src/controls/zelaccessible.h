// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lets screen readers and other assistive tools see the owner-drawn controls
// for what they are: buttons, check boxes and a link, with their captions,
// states and a way to press them.
void InstallControlAccessibility();
