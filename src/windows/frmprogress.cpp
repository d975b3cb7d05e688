// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmprogress.h"

#include "windows/programstyle.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

frmProgress::frmProgress(QWidget *owner)
    : QWidget(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
    , m_label(new QLabel(this))
    , m_bar(new QProgressBar(this))
{
    setObjectName(u"frmProgress"_s);
    programstyle::ApplyDark(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 16, 18, 18);
    layout->setSpacing(10);
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
    m_bar->setTextVisible(true);
    setFixedWidth(380);
    forms::Add(this);
}

void frmProgress::SetCaption(const QString &caption)
{
    setWindowTitle(caption);
    m_label->setText(caption);
}

void frmProgress::SetRange(int minimum, int maximum)
{
    m_bar->setRange(minimum, maximum);
    m_bar->setValue(minimum);
}

int frmProgress::Value() const
{
    return m_bar->value();
}

void frmProgress::SetValue(int value)
{
    m_bar->setValue(value);
}

int frmProgress::Maximum() const
{
    return m_bar->maximum();
}
