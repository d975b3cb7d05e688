// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/shuffler.h"
#include "controls/widgetsurface.h"
#include "windows/forms.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

class CardArea;
class QAction;
class QMenu;
class QTimer;
class TypedAnswer;
class frmProgress;
class zelCheck;
class zelControl;
class zelFlatButton;
class zelHL;

// The study window: the card face (painted by the card renderer into the
// window's picture), the trouble boxes, the four flat buttons, the help link
// and the popup menu. It turns clicks, keys and menu choices into calls of
// the card manager and the other commands, and keeps a help line on the card
// face while the mouse moves over its controls.
class frmMain : public QWidget, public ShuffleHost, public forms::Unloadable
{
    Q_OBJECT

public:
    // The study window, loaded (made and shown) when it is not yet.
    static frmMain *Instance();
    // The study window if it is loaded, else nullptr.
    static frmMain *Existing();
    // Loaded, and shown again if a new session hid it.
    static frmMain *Ensure();

    ~frmMain() override;

    zelCheck *Check1;
    zelCheck *Check2;
    zelFlatButton *zelFlatButton1; // menu
    zelFlatButton *zelFlatButton2; // next card
    zelFlatButton *zelFlatButton3; // previous card
    zelFlatButton *zelFlatButton4; // question / answer
    zelHL *zelHL1;
    CardArea *Card;      // what assistive tools read of the card face
    TypedAnswer *Typing; // the line to type the answer in, when the option is on
    QTimer *Timer1;
    QMenu *mP;
    QAction *mP_n, *mP_o, *mP_fc, *mP_vac, *mP_sc, *mP_sp, *mP_ss, *mP_qh, *mP_a, *mP_e;
    QAction *mP_u;                // undo, after the menu's own items
    QAction *mP_print, *mP_speak; // additions, after the menu's own items
    bool RestartPending = false;

    static constexpr int kCardWidth = 640;
    static constexpr int kCardHeight = 480;
    static constexpr int kControlRows = 60;
    // Keys of the additions: T turns "show only trouble cards" on and off,
    // F1 opens the manual as the help link does, Z (also with Ctrl) undoes.
    static constexpr int kKeyTroubleOnly = 84;
    static constexpr int kKeyHelp = 112;
    static constexpr int kKeyUndo = 90;
    // P prints the trouble cards (so Ctrl+P does too: keys count by their code
    // alone). F5 speaks the card, as media players replay with it; a function
    // key still works while a line on the card takes the letters typed.
    static constexpr int kKeyPrint = 80;
    static constexpr int kKeySpeak = 116;

    // The window's load sequence: position, trouble-only box, controls on,
    // shown in front, hover help running.
    void Load();
    // What a new session does instead of unloading the window: hidden and
    // cleared, ready for the next deck.
    void Reinitialize();
    // The deck is on show: keys and commands act from now on.
    void SetStudying(bool studying) { m_studying = studying; }
    bool Studying() const { return m_studying; }

    // What the help line says over Check1, Check2 and the four buttons, in
    // that order, and when the mouse has left them.
    static const QStringList &HoverHelpTexts();

    void EnableStudyControls(bool enabled);
    void StartHoverTimer();
    void StopHoverTimer();
    void ApplyColors(quint32 backA, quint32 backB, quint32 textColor);

    QWidget *CardWindow() { return this; }
    WindowSurface *CardSurface() { return &m_surface; }

    // A key by its virtual-key code and shift state, whichever control had it.
    void HandleKey(int keyCode, int shift);
    void ShowMenuAt(const QPoint &globalPosition);
    QString QuickHelpText() const;

    // The commands.
    void ToggleTrouble();
    void Shuffle();
    void ShowSaveProgress();
    void Exit();
    void SaveStatistics();
    void ShowQuickHelp();
    void ShowAbout();
    void NewSession();
    void ShowOptions();
    void ShowFind();
    void ViewAllCards();
    void Undo();
    void PrintTroubleCards();
    void SpeakCard();
    // Speak Card is off, saying why in its tooltip, while the engine can't speak.
    void UpdateSpeakItem();

    // ShuffleHost
    void EnableCommands(bool enabled) override { EnableStudyControls(enabled); }
    void StopCardDisplay() override;
    void StartCardDisplay() override;
    void ShowCardTexts(const QString &text, const QString &pass) override;
    void ShowProgress(const QString &caption, int minimum, int maximum) override;
    int ProgressValue() const override;
    void SetProgressValue(int value) override;
    void CloseProgress() override;

    void OnUnload() override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    frmMain();
    // The keys of the study commands, codes 13 to 88; false for any other.
    bool HandleStudyKey(int keyCode);
    void HandleAddedKey(int keyCode);
    void BuildControls();
    void BuildMenu();
    void ShowHoverHelp(const QString &text);
    void HoverTick();

    WidgetSurface m_surface;
    QWidget *m_strip;
    QPointer<frmProgress> m_progress;
    bool m_studying = false;
    bool m_closing = false;
};
