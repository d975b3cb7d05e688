// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

class QWidget;

// The window collection: every window of the program that is loaded, in the
// order it was created. Shutdown walks it to save positions and unload them.
// A window is loaded when it is made and unloaded when it is closed for good.
namespace forms {

// What a window does when it is unloaded (before it is hidden and deleted).
class Unloadable
{
public:
    virtual ~Unloadable() = default;
    virtual void OnUnload() = 0;
};

// Adds a window; it leaves the collection when it is unloaded or destroyed.
void Add(QWidget *form);
QList<QWidget *> Open();
bool IsOpen(const QWidget *form);
// Runs the window's unload handling, hides it and deletes it once control
// returns to the event loop (so a window may unload itself from its own
// handlers). Unloading a window twice does nothing.
void Unload(QWidget *form);
// The name shutdown logs a window by: its object name ("frmMain", ...).
QString Name(const QWidget *form);

} // namespace forms
