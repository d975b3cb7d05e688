// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <memory>

class r_data;
class r_renderer;
class WindowSurface;

// The current card as the study program will show it: its front (the
// question) and its back (the answer), umlaut escapes replaced, drawn by the
// study program's own card renderer.
class CardPreview : public QWidget
{
    Q_OBJECT

public:
    explicit CardPreview(QWidget *parent = nullptr);
    ~CardPreview() override;

    void SetCard(const QString &question, const QString &answer);
    QImage Front() const;
    QImage Back() const;

private:
    class Face;
    Face *m_front;
    Face *m_back;
};
