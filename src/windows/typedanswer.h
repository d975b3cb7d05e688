// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QTimer;
class frmMain;

// Typing the answer: a line on the study window's card for the side the card
// did not come up with (the answer, unless answers come first). Return
// checks what was typed: a right answer shows that side in green for a
// moment, then the next card; a wrong one turns the card with the letters
// that differ marked, and marks it as a trouble card as Space does (so Undo
// takes both back). While the line has the keyboard, what is typed stays in
// it: no letter key or Space reaches the study window's commands, with or
// without Ctrl. Left and Right move between cards while the line is empty or
// the answer was checked, else the cursor; Escape hands the keyboard back to
// the study window until the next card. The counts of right and wrong answers
// stand under the line and go with the kept session. With the study option
// off the line is hidden and the study window is as it always was.
class TypedAnswer : public QWidget
{
    Q_OBJECT

public:
    // Asking for the side not on show; that side on show (turned by hand,
    // or checked wrong), where Return goes on; right, until the next card.
    enum class State { Off, Asking, Revealed, Wrong, Right };

    explicit TypedAnswer(frmMain *main);

    QLineEdit *Line() const { return m_line; }
    QLabel *Counts() const { return m_counts; }
    State CurrentState() const { return m_state; }
    int RightCount() const { return m_right; }
    int WrongCount() const { return m_wrong; }
    void SetCounts(int right, int wrong);

    // How long a right answer stays before the next card.
    static constexpr int kRightMs = 900;

    // The card manager drew the card face: a face not seen before asks anew.
    void FaceShown();
    // The study options changed, or studying began or ended: the line comes
    // or goes with the option.
    void Refresh();
    // Return on the line: check, or go on to the next card.
    void Enter();
    // The keyboard to the line, while the line is on show.
    void TakeFocus();
    void ApplyColors(quint32 backA, quint32 backB, quint32 textColor);

private:
    struct Face
    {
        int card = 0;
        bool answer = false;
        QString text;
        int views = 0;
        bool operator==(const Face &o) const
        {
            return card == o.card && answer == o.answer && text == o.text && views == o.views;
        }
    };
    static Face CurrentFace();
    bool Active() const;
    void Ask();
    void Check();
    void Restyle();
    void ShowCounts();

    frmMain *m_main;
    QLineEdit *m_line;
    QLabel *m_counts;
    QTimer *m_next;
    State m_state = State::Off;
    std::optional<Face> m_face;
    bool m_drawing = false; // the face drawn is this line's own doing
    int m_right = 0;
    int m_wrong = 0;
    quint32 m_backA = 0;
    quint32 m_backB = 0;
    quint32 m_text = 0xFFFFFF;
};
