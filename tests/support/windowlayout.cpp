// SPDX-License-Identifier: GPL-3.0-or-later
// A window written out as text, to compare with the layout recorded for it:
// a moved control, a lost caption, tip or key, a wrong default state or
// colour all show as a changed line.
#include "uitestsupport.h"

#include "controls/propertybag.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCryptographicHash>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMetaEnum>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabBar>
#include <QTableView>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

namespace {

QString digest(const QString &text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex().left(12));
}

QString quoted(QString text)
{
    text = text.replace(QDir::homePath(), u"~"_s).replace(QString::fromLatin1(qVersion()), u"<Qt>"_s);
    static const QRegularExpression duration(u"\\d+\\.\\d{7}"_s); // how long a search took
    text.replace(duration, u"<time>"_s);
    text = text.replace(u'\\', u"\\\\"_s)
                   .replace(u'\n', u"\\n"_s)
                   .replace(u'\r', u"\\r"_s)
                   .replace(u'\t', u"\\t"_s)
                   .replace(u'"', u"\\\""_s);
    // Long texts (a manual page, a licence) by their start and a digest of the whole.
    if (text.size() > 160)
        text = text.left(120) + u"...(%1 chars, %2)"_s.arg(text.size()).arg(digest(text));
    return u'"' + text + u'"';
}

// The name of an enum's value, as Qt spells it.
template<typename E> QString key(E value)
{
    return QString::fromLatin1(QMetaEnum::fromType<E>().valueToKey(int(value)));
}

// Appends word to parts when on.
void add(QStringList &parts, bool on, const QString &word)
{
    if (on)
        parts << word;
}

QString colour(const QColor &c)
{
    return c.alpha() == 255 ? c.name() : c.name(QColor::HexArgb);
}

QString fontText(const QFont &f)
{
    QString out = f.family() + u' ' + QString::number(f.pointSizeF()) + u"pt"_s;
    if (f.pixelSize() > 0)
        out = f.family() + u' ' + QString::number(f.pixelSize()) + u"px"_s;
    if (f.weight() != QFont::Normal)
        out += u" weight "_s + QString::number(int(f.weight()));
    if (f.italic())
        out += u" italic"_s;
    return out;
}

class Writer
{
public:
    explicit Writer(QWidget *window) : m_window(window) {}

    QString text() const { return m_lines.join(u'\n') + u'\n'; }

    void widget(QWidget *w, int depth)
    {
        QStringList parts {QString::fromLatin1(w->metaObject()->className())};
        add(parts, !w->objectName().isEmpty(), u'#' + w->objectName());
        // What is hidden has no place yet: it is written out where it shows.
        if (w != m_window && w->isHidden())
            return line(depth, parts.join(u' ') + u" hidden"_s);
        const QPoint at = w == m_window ? QPoint() : w->mapTo(m_window, QPoint());
        parts << u"@%1,%2 %3x%4"_s.arg(at.x()).arg(at.y()).arg(w->width()).arg(w->height());
        QWidget *parent = w == m_window ? nullptr : w->parentWidget();
        add(parts, parent ? !w->isEnabledTo(parent) : !w->isEnabled(), u"disabled"_s);
        add(parts, w->focusPolicy() != Qt::NoFocus, u"focus="_s + key(w->focusPolicy()));
        if (!parent) {
            parts << u"title="_s + quoted(w->windowTitle()) << u"modality=%1"_s.arg(int(w->windowModality()));
            parts << u"font="_s + fontText(w->font());
        } else if (w->font() != parent->font()) {
            parts << u"font="_s + fontText(w->font());
        }
        add(parts, w->minimumSize() != QSize(0, 0), u"min=%1x%2"_s.arg(w->minimumWidth()).arg(w->minimumHeight()));
        add(parts, w->maximumSize() != QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX),
            u"max=%1x%2"_s.arg(w->maximumWidth()).arg(w->maximumHeight()));
        add(parts, w->testAttribute(Qt::WA_SetCursor), u"cursor=%1"_s.arg(int(w->cursor().shape())));
        add(parts, w->autoFillBackground(), u"filled"_s);
        add(parts, !w->styleSheet().isEmpty(), u"styleSheet="_s + quoted(w->styleSheet()));
        palette(w, parent, parts);
        if (const QPalette::ColorRole fore = w->foregroundRole();
            fore != QPalette::WindowText && fore != defaultForeground(w->backgroundRole()))
            parts << u"foreground="_s + key(fore);
        for (const char *name : {"toolTip", "accessibleName", "accessibleDescription"}) {
            const QString value = w->property(name).toString();
            add(parts, !value.isEmpty(), QString::fromLatin1(name) + u'=' + quoted(value));
        }
        kind(w, parts);
        ownProperties(w, parts);
        line(depth, parts.join(u' '));

        for (QAction *action : w->actions())
            this->action(action, depth + 1);
        if (auto *view = qobject_cast<QAbstractItemView *>(w))
            return items(view, depth + 1);
        if (auto *scroll = qobject_cast<QScrollArea *>(w)) {
            if (scroll->widget())
                widget(scroll->widget(), depth + 1);
            return;
        }
        if (qobject_cast<QAbstractScrollArea *>(w) || qobject_cast<QComboBox *>(w)
            || qobject_cast<QAbstractSpinBox *>(w))
            return;
        for (QObject *child : w->children()) {
            auto *c = qobject_cast<QWidget *>(child);
            if (auto *menu = qobject_cast<QMenu *>(c); menu && !menu->menuAction()->associatedObjects().size())
                popup(menu, depth + 1); // a menu of its own, not one of a menu bar
            else if (c && !c->isWindow() && !qobject_cast<QScrollBar *>(c))
                widget(c, depth + 1);
        }
    }

private:
    void line(int depth, const QString &text) { m_lines << QString(depth * 2, u' ') + text; }

    // The colours a person sees differ from the parent's (or the program's, for a window).
    static void palette(QWidget *w, QWidget *parent, QStringList &parts)
    {
        const QPalette base = parent ? parent->palette() : QApplication::palette();
        for (int i = 0; i < QPalette::NColorRoles; ++i) {
            const auto role = QPalette::ColorRole(i);
            const QString name = key(role);
            const QColor active = w->palette().color(QPalette::Active, role);
            const QColor disabled = w->palette().color(QPalette::Disabled, role);
            add(parts, active != base.color(QPalette::Active, role), name + u'=' + colour(active));
            add(parts, disabled != base.color(QPalette::Disabled, role) && disabled != active,
                name + u"(disabled)="_s + colour(disabled));
        }
    }

    // The text colour Qt picks for a background; check boxes and radio buttons
    // pick the window's text colour themselves, and a dimmed hint its own.
    static QPalette::ColorRole defaultForeground(QPalette::ColorRole background)
    {
        switch (background) {
        case QPalette::Button:
            return QPalette::ButtonText;
        case QPalette::Base:
            return QPalette::Text;
        case QPalette::Dark:
        case QPalette::Shadow:
            return QPalette::Light;
        case QPalette::Highlight:
            return QPalette::HighlightedText;
        case QPalette::ToolTipBase:
            return QPalette::ToolTipText;
        default:
            return QPalette::WindowText;
        }
    }

    // What a control of its kind says, holds or answers to.
    static void kind(QWidget *w, QStringList &parts)
    {
        if (auto *button = qobject_cast<QAbstractButton *>(w)) {
            parts << u"text="_s + quoted(button->text());
            add(parts, button->isCheckable(), button->isChecked() ? u"checked"_s : u"unchecked"_s);
            add(parts, !button->shortcut().isEmpty(), u"key="_s + button->shortcut().toString());
            add(parts, !button->icon().isNull(),
                u"icon=%1x%2"_s.arg(button->iconSize().width()).arg(button->iconSize().height()));
            if (auto *push = qobject_cast<QPushButton *>(w)) {
                add(parts, push->isDefault(), u"default"_s);
                add(parts, push->autoDefault(), u"autoDefault"_s);
            }
            if (auto *tool = qobject_cast<QToolButton *>(w))
                parts << u"style=%1"_s.arg(int(tool->toolButtonStyle()));
        } else if (auto *label = qobject_cast<QLabel *>(w)) {
            parts << u"text="_s + quoted(label->text());
            add(parts, label->alignment() != (Qt::AlignLeft | Qt::AlignVCenter),
                u"align=0x%1"_s.arg(int(label->alignment()), 0, 16));
            add(parts, label->wordWrap(), u"wrap"_s);
            if (label->buddy())
                parts << u"buddy="_s + QString::fromLatin1(label->buddy()->metaObject()->className()) + u'#'
                                + label->buddy()->objectName();
        } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
            parts << u"text="_s + quoted(edit->text());
            add(parts, !edit->placeholderText().isEmpty(), u"placeholder="_s + quoted(edit->placeholderText()));
            add(parts, edit->maxLength() != 32767, u"maxLength=%1"_s.arg(edit->maxLength()));
            add(parts, edit->isReadOnly(), u"readOnly"_s);
            add(parts, edit->alignment() != (Qt::AlignLeft | Qt::AlignVCenter),
                u"align=0x%1"_s.arg(int(edit->alignment()), 0, 16));
            add(parts, edit->isClearButtonEnabled(), u"clearButton"_s);
        } else if (auto *combo = qobject_cast<QComboBox *>(w)) {
            QStringList texts;
            for (int i = 0; i < combo->count(); ++i)
                texts << quoted(combo->itemText(i));
            // A long list (every language) by its start and a digest of the whole.
            QString items = texts.join(u", "_s);
            if (texts.size() > 8)
                items = texts.mid(0, 4).join(u", "_s) + u", ...(%1 items, %2)"_s.arg(texts.size()).arg(digest(items));
            parts << u"items=["_s + items + u"] current="_s + quoted(combo->currentText());
        } else if (auto *spin = qobject_cast<QSpinBox *>(w)) {
            parts << u"value=%1 range=%2..%3 step=%4"_s.arg(spin->value())
                             .arg(spin->minimum())
                             .arg(spin->maximum())
                             .arg(spin->singleStep());
        } else if (auto *slider = qobject_cast<QAbstractSlider *>(w)) {
            parts << u"value=%1 range=%2..%3 steps=%4/%5 orientation=%6"_s.arg(slider->value())
                             .arg(slider->minimum())
                             .arg(slider->maximum())
                             .arg(slider->singleStep())
                             .arg(slider->pageStep())
                             .arg(int(slider->orientation()));
        } else if (auto *bar = qobject_cast<QProgressBar *>(w)) {
            parts << u"value=%1 range=%2..%3 textVisible=%4"_s.arg(bar->value())
                             .arg(bar->minimum())
                             .arg(bar->maximum())
                             .arg(bar->isTextVisible());
        } else if (auto *tabs = qobject_cast<QTabBar *>(w)) {
            QStringList texts;
            for (int i = 0; i < tabs->count(); ++i)
                texts << quoted(tabs->tabText(i)) + (tabs->isTabEnabled(i) ? QString() : u" disabled"_s)
                                + (tabs->tabToolTip(i).isEmpty() ? QString()
                                                                 : u" tip="_s + quoted(tabs->tabToolTip(i)));
            parts << u"tabs=["_s + texts.join(u", "_s) + u"] current=%1"_s.arg(tabs->currentIndex());
        } else if (auto *stack = qobject_cast<QStackedWidget *>(w)) {
            parts << u"current=%1"_s.arg(stack->currentIndex());
        } else if (auto *text = qobject_cast<QTextEdit *>(w)) {
            parts << u"text="_s + quoted(text->toPlainText());
            add(parts, text->isReadOnly(), u"readOnly"_s);
        }
    }

    // The program's own controls: their design-time properties that differ
    // from the defaults.
    static void ownProperties(QWidget *w, QStringList &parts)
    {
        if (auto *control = qobject_cast<zelControl *>(w)) {
            PropertyBag bag;
            control->WriteProperties(bag);
            for (auto it = bag.values().cbegin(); it != bag.values().cend(); ++it) {
                const QVariant &v = it.value();
                parts << it.key() + u'='
                                + (v.typeId() == QMetaType::QString         ? quoted(v.toString())
                                           : v.typeId() == QMetaType::QFont ? fontText(v.value<QFont>())
                                                                            : v.toString());
            }
        }
    }

    void popup(QMenu *menu, int depth)
    {
        line(depth, u"QMenu #"_s + menu->objectName() + u" title="_s + quoted(menu->title()));
        for (QAction *entry : menu->actions())
            action(entry, depth + 1);
    }

    void action(QAction *a, int depth)
    {
        if (a->isSeparator()) {
            line(depth, u"action ----"_s);
            return;
        }
        QStringList parts {u"action"_s, quoted(a->text())};
        QStringList keys;
        for (const QKeySequence &key : a->shortcuts())
            keys << key.toString();
        add(parts, !keys.isEmpty(), u"keys="_s + keys.join(u','));
        add(parts, a->shortcutContext() != Qt::WindowShortcut, u"context=%1"_s.arg(int(a->shortcutContext())));
        add(parts, a->isCheckable(), a->isChecked() ? u"checked"_s : u"unchecked"_s);
        add(parts, !a->isEnabled(), u"disabled"_s);
        add(parts, !a->isVisible(), u"hidden"_s);
        add(parts, !a->icon().isNull(), u"icon"_s);
        const QString stripped = QString(a->text()).remove(u'&').remove(u"..."_s); // Qt's own tip
        add(parts, !a->toolTip().isEmpty() && a->toolTip() != stripped, u"toolTip="_s + quoted(a->toolTip()));
        add(parts, !a->statusTip().isEmpty(), u"statusTip="_s + quoted(a->statusTip()));
        add(parts, !a->whatsThis().isEmpty(), u"whatsThis="_s + quoted(a->whatsThis()));
        line(depth, parts.join(u' '));
        if (QMenu *menu = a->menu())
            for (QAction *entry : menu->actions())
                action(entry, depth + 1);
    }

    // The columns with their widths, and the rows with what each cell shows.
    void items(QAbstractItemView *view, int depth)
    {
        QAbstractItemModel *model = view->model();
        if (!model)
            return;
        auto *tree = qobject_cast<QTreeView *>(view);
        QStringList columns;
        for (int c = 0; c < model->columnCount(); ++c) {
            QString column = quoted(model->headerData(c, Qt::Horizontal).toString());
            if (tree)
                column += tree->isColumnHidden(c) ? u" hidden"_s : u" %1px"_s.arg(tree->columnWidth(c));
            else if (auto *table = qobject_cast<QTableView *>(view))
                column += table->isColumnHidden(c) ? u" hidden"_s : u" %1px"_s.arg(table->columnWidth(c));
            columns << column;
        }
        // How a click selects, and how the rows look apart.
        QString look = key(view->selectionMode()) + u'/' + key(view->selectionBehavior());
        if (view->alternatingRowColors())
            look += u" alternating"_s;
        if (tree && !tree->rootIsDecorated())
            look += u" flat"_s;
        line(depth,
             u"columns ["_s + columns.join(u", "_s)
                     + u"] rows=%1 current=%2,%3 "_s.arg(model->rowCount())
                               .arg(view->currentIndex().row())
                               .arg(view->currentIndex().column())
                     + look);
        rows(model, QModelIndex(), depth, 0);
    }

    void rows(QAbstractItemModel *model, const QModelIndex &parent, int depth, int level)
    {
        const int shown = std::min(model->rowCount(parent), 12);
        for (int r = 0; r < shown; ++r) {
            QStringList cells;
            for (int c = 0; c < model->columnCount(parent); ++c) {
                const QModelIndex at = model->index(r, c, parent);
                const QVariant font = at.data(Qt::FontRole), fore = at.data(Qt::ForegroundRole),
                               align = at.data(Qt::TextAlignmentRole), check = at.data(Qt::CheckStateRole),
                               tip = at.data(Qt::ToolTipRole);
                QStringList cell {quoted(at.data().toString())};
                add(cell, font.isValid(), u"font="_s + fontText(font.value<QFont>()));
                add(cell, fore.isValid(), u"colour="_s + colour(fore.value<QBrush>().color()));
                add(cell, align.isValid(), u"align=%1"_s.arg(align.toInt(), 0, 16));
                add(cell, check.isValid(), u"check=%1"_s.arg(check.toInt()));
                add(cell, tip.isValid(), u"tip="_s + quoted(tip.toString()));
                add(cell, at.data(Qt::DecorationRole).isValid(), u"icon"_s);
                cells << cell.join(u' ');
            }
            line(depth, u"row "_s + cells.join(u" | "_s));
            if (level < 2 && model->hasChildren(model->index(r, 0, parent)))
                rows(model, model->index(r, 0, parent), depth + 1, level + 1);
        }
    }

    QWidget *m_window;
    QStringList m_lines;
};

} // namespace

void checkLayout(QWidget *window, const QString &name)
{
    Writer writer(window);
    writer.widget(window, 0);
    const QString actual = writer.text();
    QFile file(QStringLiteral(LAYOUTS_DIR) + u'/' + name + u".txt"_s);
    if (qEnvironmentVariableIntValue("VOCABRIX_RECORD_LAYOUTS") == 1) {
        QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(file.fileName()));
        file.write(actual.toUtf8());
        return;
    }
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName() + u" is missing: record it"_s));
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n');
    const QStringList got = actual.split(u'\n');
    QStringList differences;
    for (qsizetype i = 0; i < std::max(expected.size(), got.size()) && differences.size() < 6; ++i) {
        const QString want = expected.value(i), have = got.value(i);
        if (want != have)
            differences << u"line %1\n  recorded: %2\n  now:      %3"_s.arg(i + 1).arg(want, have);
    }
    QVERIFY2(differences.isEmpty(),
             qPrintable(name
                        + u" differs from its recorded layout (VOCABRIX_RECORD_LAYOUTS=1 "
                          u"records it anew):\n"_s
                        + differences.join(u'\n')));
}
