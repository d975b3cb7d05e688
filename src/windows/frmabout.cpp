// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmabout.h"

#include "core/prompter.h"
#include "core/version.h"
#include "drawing/cmemdc.h"
#include "drawing/windowsurface.h"
#include "windows/programstyle.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int kBannerHeight = 92;
}

frmAbout::frmAbout(QWidget *parent) : QDialog(parent)
{
    setObjectName(u"frmAbout"_s);
    setWindowTitle(u"About Vocabrix"_s);
    programstyle::ApplyDark(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, kBannerHeight + 14, 24, 16);
    layout->setSpacing(8);

    auto *version = new QLabel(u"Version %1.%2 build %3"_s.arg(version::kMajor)
                                       .arg(version::kMinor)
                                       .arg(version::kRevision),
                               this);
    QFont bold = version->font();
    bold.setBold(true);
    version->setFont(bold);
    auto *notice = new QLabel(QString::fromUtf16(version::kNotice), this);
    notice->setWordWrap(true);
    auto *about =
            new QLabel(u"Study vocabulary with flash cards: flip, shuffle, mark the cards you "
                       "find hard and study only those, save your progress and come back to it."_s,
                       this);
    about->setWordWrap(true);
    auto *qt = new QLabel(u"Built with Qt %1, running on Qt %2."_s
                                  .arg(QString::fromLatin1(QT_VERSION_STR),
                                       QString::fromLatin1(qVersion())),
                          this);
    qt->setForegroundRole(QPalette::PlaceholderText);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    layout->addWidget(version);
    layout->addWidget(about);
    layout->addWidget(notice);
    layout->addWidget(qt);
    layout->addSpacing(6);
    layout->addWidget(buttons);
    setFixedWidth(440);
}

void frmAbout::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    // The banner is a card face with the program's name on it.
    WindowSurface banner(Qt::black, devicePixelRatioF());
    banner.Resize(QSize(width(), kBannerHeight));
    cMemDC dc;
    int w = width(), h = kBannerHeight;
    dc.Create(w, h, nullptr, &banner);
    dc.Gradient(0, 0, w / 2, h, 0, 14570825);
    dc.Gradient(w / 2, 0, w, h, 14570825, 0);
    LogicalFont font;
    font.bold = true;
    font.size = 24;
    dc.SetFont(font);
    const int format = cMemDC::DT_CENTER | cMemDC::DT_VCENTER | cMemDC::DT_SINGLELINE;
    int l = -1, t = -1, r = w - 1, b = h - 1;
    dc.SetForeColor(0);
    dc.DrawText(QString::fromUtf16(version::kProductName), l, t, r, b, format);
    l = 0, t = 0, r = w, b = h;
    dc.SetForeColor(0xFFFFFF);
    dc.DrawText(QString::fromUtf16(version::kProductName), l, t, r, b, format);
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), banner.image());
}

void frmAbout::ShowAbout(QWidget *owner)
{
    auto *about = new frmAbout(owner);
    prompter().ShowModal(about);
    delete about;
}
