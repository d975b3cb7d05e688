// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <array>
#include <vector>

class QTimer;

// The colour metrics of a card face and its five text slots. Colours are kept
// as an ordered list of (name, 0x00BBGGRR) pairs whose index 0 is an empty
// placeholder, read from and written to the master database under the group
// "color_metrics". The texts are set by the card manager and drawn by the
// renderer: one main text and four corners, each corner with a show flag and
// an optional display time after which it is taken down.
class r_data : public QObject
{
    Q_OBJECT

public:
    enum class Corner { TopLeft, TopRight, BottomLeft, BottomRight };

    struct ColorEntry
    {
        QString name;
        quint32 color = 0;
    };

    explicit r_data(QObject *parent = nullptr);
    ~r_data() override;

    // Adds the pair, or replaces the colour of a name already there.
    void SetColor(const QString &name, quint32 color);
    quint32 Color(const QString &name, quint32 defaultColor) const;
    // Index 0 is the placeholder; colours are 1 .. size - 1.
    const std::vector<ColorEntry> &Colors() const { return m_colors; }

    void ColorDefaults();
    // Reads every number entry of the group "color_metrics"; returns how many.
    int ReadColors();
    // Writes the whole list (placeholder too) and saves the master database.
    void WriteColors();
    // ReadColors, falling back to the defaults when the database holds none.
    void LoadColors();

    // How the main text is drawn: plainly, all of it as a right answer, or
    // with some letters marked (one flag for each character of the text).
    enum class Marking { None, Right, Letters };

    QString MainText() const { return m_mainText; }
    // A new main text is drawn plainly, whatever marking the one before had.
    void SetMainText(const QString &text)
    {
        m_mainText = text;
        m_marking = Marking::None;
        m_marked.clear();
    }
    Marking MainMarking() const { return m_marking; }
    const QList<bool> &MarkedLetters() const { return m_marked; }
    void SetMainMarking(Marking marking, const QList<bool> &letters = {})
    {
        m_marking = marking;
        m_marked = letters;
    }
    // A smaller line under the main text (the card's note); empty draws none.
    QString NoteText() const { return m_noteText; }
    void SetNoteText(const QString &text) { m_noteText = text; }

    QString CornerText(Corner corner) const { return slot(corner).text; }
    bool CornerShown(Corner corner) const { return slot(corner).shown; }
    // Sets the text and shows it; a display time above 0 seconds takes it down
    // again when it runs out (the text itself stays).
    void SetCornerText(Corner corner, const QString &text, int displaySeconds = 0);
    void SetCornerShown(Corner corner, bool shown);

Q_SIGNALS:
    // A corner's display time ran out and its show flag was cleared: the card
    // wants redrawing.
    void cornerExpired(r_data::Corner corner);

private:
    struct CornerSlot
    {
        QString text;
        bool shown = false;
        QTimer *timer = nullptr;
    };
    CornerSlot &slot(Corner corner) { return m_corners[size_t(corner)]; }
    const CornerSlot &slot(Corner corner) const { return m_corners[size_t(corner)]; }

    std::vector<ColorEntry> m_colors;
    QString m_mainText;
    QString m_noteText;
    Marking m_marking = Marking::None;
    QList<bool> m_marked;
    std::array<CornerSlot, 4> m_corners;
};
