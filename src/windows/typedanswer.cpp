// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/typedanswer.h"

#include "cards/answercheck.h"
#include "cards/deck.h"
#include "controls/zelcheck.h"
#include "core/programstate.h"
#include "drawing/cmemdc.h"
#include "drawing/colourcontrast.h"
#include "drawing/logicalfont.h"
#include "drawing/r_renderer.h"
#include "settings/r_data.h"
#include "settings/studyoptions.h"
#include "windows/cardarea.h"
#include "windows/frmmain.h"
#include "windows/modrender.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kKeyLeft = 37;
constexpr int kKeyRight = 39;
// Far more than any answer; what is typed is compared letter by letter.
constexpr int kLongestTyped = 200;

QColor toColor(quint32 ole)
{
    const quint32 c = cMemDC::TranslateColor(ole);
    return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}

QString cssColour(quint32 ole)
{
    return toColor(ole).name();
}

// The line keeps what is typed on it from the study window's keys.
class TypingLine final : public QLineEdit
{
public:
    TypingLine(TypedAnswer *owner, frmMain *main) : QLineEdit(owner), m_owner(owner), m_main(main)
    {}

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const int key = event->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_owner->Enter();
            return;
        }
        if (key == Qt::Key_Escape) {
            m_main->setFocus();
            return;
        }
        const bool arrow = (key == Qt::Key_Left || key == Qt::Key_Right)
                && !(event->modifiers() & ~Qt::KeypadModifier);
        if (arrow && (text().isEmpty() || isReadOnly())) {
            m_main->HandleKey(key == Qt::Key_Left ? kKeyLeft : kKeyRight, 0);
            return;
        }
        QLineEdit::keyPressEvent(event);
        // What the line leaves (a letter on a checked answer, Ctrl+S) would
        // reach the study window's commands: it stays here.
        const QString typed = event->text();
        if ((key >= Qt::Key_Space && key <= Qt::Key_Z)
            || (!typed.isEmpty() && typed.front().isPrint()))
            event->accept();
    }

private:
    TypedAnswer *m_owner;
    frmMain *m_main;
};

} // namespace

TypedAnswer::TypedAnswer(frmMain *main)
    : QWidget(main)
    , m_main(main)
    , m_line(new TypingLine(this, main))
    , m_counts(new QLabel(this))
    , m_next(new QTimer(this))
{
    setObjectName(u"TypedAnswer"_s);
    // On the card, under its main text and note, clear of the corners.
    setGeometry(120, 286, 400, 54);
    m_line->setObjectName(u"TypedAnswerLine"_s);
    m_line->setGeometry(30, 0, 340, 30);
    m_line->setMaxLength(kLongestTyped);
    m_line->setAccessibleName(u"Your answer"_s);
    LogicalFont font;
    font.size = 12;
    m_line->setFont(font.toQFont());
    m_counts->setObjectName(u"TypedAnswerCounts"_s);
    m_counts->setGeometry(0, 34, 400, 18);
    m_counts->setAlignment(Qt::AlignCenter);
    font.size = 8;
    font.bold = true;
    m_counts->setFont(font.toQFont());
    m_next->setSingleShot(true);
    m_next->setInterval(kRightMs);
    connect(m_next, &QTimer::timeout, this, [this] {
        if (m_state == State::Right)
            m_main->HandleKey(kKeyRight, 0);
    });
    ShowCounts();
    hide();
}

void TypedAnswer::SetCounts(int right, int wrong)
{
    m_right = right;
    m_wrong = wrong;
    ShowCounts();
}

void TypedAnswer::ShowCounts()
{
    m_counts->setText(u"right %1 \u00B7 wrong %2"_s.arg(m_right).arg(m_wrong));
}

TypedAnswer::Face TypedAnswer::CurrentFace()
{
    Face face;
    face.card = modrender::CurrentCard;
    face.answer = modrender::ShownSide() == modrender::Side::Answer;
    if (const r_data *metrics = modrender::Metrics())
        face.text = metrics->MainText();
    if (face.card >= g_Deck.LBound() && face.card <= g_Deck.UBound())
        face.views = g_Deck[face.card].timesViewed;
    return face;
}

bool TypedAnswer::Active() const
{
    return studyoptions::TypeAnswer() && m_main->Studying() && modrender::Metrics();
}

void TypedAnswer::FaceShown()
{
    if (m_drawing)
        return;
    // A face drawn again (the note switched on or off) keeps what the line
    // shows; a new card, a turn, an undone step or the same card counted
    // again asks.
    const Face face = CurrentFace();
    if (m_face && *m_face == face)
        return;
    m_face = face;
    Ask();
}

void TypedAnswer::Refresh()
{
    // Another option changed: what the line shows stays.
    if (Active() == (m_state != State::Off))
        return;
    m_face.reset();
    FaceShown();
}

void TypedAnswer::Ask()
{
    m_next->stop();
    if (!Active()) {
        m_state = State::Off;
        hide();
        return;
    }
    const bool firstSide =
            (modrender::ShownSide() == modrender::Side::Answer) == modrender::AnswerFirst();
    m_state = firstSide ? State::Asking : State::Revealed;
    m_line->clear();
    m_line->setReadOnly(!firstSide);
    const QString side = modrender::AnswerFirst() ? u"question"_s : u"answer"_s;
    m_line->setPlaceholderText(firstSide ? u"Type the %1, then Return"_s.arg(side)
                                         : u"Return: the next card"_s);
    m_line->setAccessibleDescription(m_line->placeholderText());
    Restyle();
    show();
    TakeFocus();
}

void TypedAnswer::Enter()
{
    if (g_ShuffleRunning || !m_main->Studying())
        return;
    if (m_state == State::Asking)
        Check();
    else if (m_state != State::Off)
        m_main->HandleKey(kKeyRight, 0);
}

void TypedAnswer::Check()
{
    const int index = modrender::CurrentCard;
    if (index < g_Deck.LBound() || index > g_Deck.UBound())
        return;
    const Card &card = g_Deck[index];
    const QString expected = modrender::AnswerFirst() ? card.question : card.answer;
    if (expected.isEmpty()) {
        // Nothing to ask (the empty slot after the last card): on to the next.
        m_main->HandleKey(kKeyRight, 0);
        return;
    }
    const QString typed = m_line->text();
    const answercheck::Verdict verdict = answercheck::Check(typed, expected);
    // The side asked for, as the answer button turns to it; a wrong answer
    // also marks the card as Space would. Undo takes back both.
    m_drawing = true;
    modrender::ToggleAnswer();
    if (!verdict.right && !m_main->Check1->Checked())
        m_main->ToggleTrouble();
    if (r_data *metrics = modrender::Metrics()) {
        metrics->SetMainMarking(verdict.right ? r_data::Marking::Right : r_data::Marking::Letters,
                                verdict.marked);
        if (r_renderer *renderer = modrender::Renderer())
            renderer->Draw(true);
    }
    m_drawing = false;
    m_face = CurrentFace();

    ++(verdict.right ? m_right : m_wrong);
    ShowCounts();
    m_state = verdict.right ? State::Right : State::Wrong;
    m_line->setReadOnly(true);
    m_line->setPlaceholderText(u"Return: the next card"_s);
    Restyle();
    m_main->Card->SetDescription(modrender::CardDescription()
                                 + (verdict.right ? u", typed answer right"_s
                                                  : u", typed answer wrong: '"_s + typed + u"'"_s));
    if (verdict.right)
        m_next->start();
}

void TypedAnswer::TakeFocus()
{
    if (isVisible() && m_line->isEnabled())
        m_line->setFocus();
}

void TypedAnswer::ApplyColors(quint32 backA, quint32 backB, quint32 textColor)
{
    m_backA = backA;
    m_backB = backB;
    m_text = textColor;
    Restyle();
}

void TypedAnswer::Restyle()
{
    // A well in the card's colours, its edge green when right and gold (or
    // the darker marks of a light card) when wrong.
    const quint32 base = cMemDC::BlendColour(cMemDC::TranslateColor(m_backB),
                                             cMemDC::TranslateColor(m_backA), 0.5);
    const quint32 text = ReadableOn(m_text, base);
    quint32 edge = cMemDC::BlendColour(text, base, 0.5);
    if (m_state == State::Right || m_state == State::Wrong)
        edge = r_renderer::MarkColour(m_state == State::Right, base);
    m_line->setStyleSheet(
            u"QLineEdit { background: %1; color: %2; border: 2px solid %3; "
            "border-radius: 4px; padding: 1px 6px; selection-background-color: %2; "
            "selection-color: %1; }"_s.arg(cssColour(base), cssColour(text), cssColour(edge)));
    QPalette line = m_line->palette();
    line.setColor(QPalette::PlaceholderText, toColor(cMemDC::BlendColour(text, base, 0.45)));
    m_line->setPalette(line);
    QPalette counts = m_counts->palette();
    counts.setColor(QPalette::WindowText, toColor(ReadableOn(m_text, m_backB)));
    m_counts->setPalette(counts);
}
