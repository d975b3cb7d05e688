// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

#include <functional>

class QPainter;

// An icon painted by the program at whatever size and scale is asked for,
// when it is first asked for, and kept: nothing is decoded or painted while
// start-up shows its windows, and every size is sharp.
using IconPainter = std::function<void(QPainter &painter, int size)>;
QIcon PaintedIcon(IconPainter paint);

// The chapter window's commands: a card with a plus (add), with a minus
// (remove), with a play mark (resume progress), with a turning arrow (resume
// the last session) and the information mark (about).
enum class CommandIcon { AddChapter, RemoveChapter, Resume, ResumeSession, About };
QIcon CommandIconFor(CommandIcon command);
