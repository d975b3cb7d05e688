// SPDX-License-Identifier: GPL-3.0-or-later
#include "headerrow.h"

#include <QList>

using namespace Qt::Literals::StringLiterals;

namespace headerrow {

namespace {

// Both sides must come from one language, and in this order: a German list
// may well hold the card "Frage,question", and an English one
// "answer,question", while "Frage,Antwort" is hardly ever a card. A card taken
// for column names shows as such in the import window's preview, and the
// command line says so, so a wrong guess is seen and undone.
struct Wording
{
    QStringList question, answer;
};

const QList<Wording> kWordings {
        {{u"question"_s, u"front"_s, u"front side"_s, u"term"_s, u"word"_s, u"prompt"_s,
          u"side 1"_s, u"side a"_s},
         {u"answer"_s, u"back"_s, u"back side"_s, u"definition"_s, u"translation"_s, u"meaning"_s,
          u"response"_s, u"side 2"_s, u"side b"_s}},
        {{u"Frage"_s, u"Vorderseite"_s, u"Begriff"_s, u"Wort"_s, u"Ausdruck"_s, u"Seite 1"_s,
          u"Seite A"_s},
         {u"Antwort"_s, u"Rückseite"_s, u"Definition"_s, u"Übersetzung"_s, u"Bedeutung"_s,
          u"Seite 2"_s, u"Seite B"_s}},
        {{u"question"_s, u"recto"_s, u"terme"_s, u"mot"_s, u"face 1"_s},
         {u"réponse"_s, u"verso"_s, u"définition"_s, u"traduction"_s, u"sens"_s, u"signification"_s,
          u"face 2"_s}},
        {{u"pregunta"_s, u"anverso"_s, u"frente"_s, u"término"_s, u"palabra"_s, u"lado 1"_s},
         {u"respuesta"_s, u"reverso"_s, u"definición"_s, u"traducción"_s, u"significado"_s,
          u"lado 2"_s}},
        {{u"domanda"_s, u"fronte"_s, u"termine"_s, u"parola"_s, u"lato 1"_s},
         {u"risposta"_s, u"retro"_s, u"definizione"_s, u"traduzione"_s, u"significato"_s,
          u"lato 2"_s}},
        {{u"вопрос"_s, u"лицевая сторона"_s, u"термин"_s, u"слово"_s, u"сторона 1"_s},
         {u"ответ"_s, u"обратная сторона"_s, u"определение"_s, u"перевод"_s, u"значение"_s,
          u"сторона 2"_s}},
};

const QStringList kNoteNames {
        u"note"_s,      u"notes"_s,      u"comment"_s,  u"hint"_s,     u"example"_s,    u"Notiz"_s,
        u"Anmerkung"_s, u"Hinweis"_s,    u"Beispiel"_s, u"remarque"_s, u"exemple"_s,    u"nota"_s,
        u"notas"_s,     u"comentario"_s, u"ejemplo"_s,  u"esempio"_s,  u"примечание"_s, u"пример"_s,
};

QString plain(const QString &name)
{
    QString out;
    for (const QChar c : name.normalized(QString::NormalizationForm_KD)) {
        if (!c.isMark() && !c.isSpace() && c != u'_' && c != u'-')
            out += c.toCaseFolded();
    }
    return out;
}

QStringList plain(const QStringList &names)
{
    QStringList out;
    for (const QString &n : names)
        out << plain(n);
    return out;
}

} // namespace

bool Detect(const QStringList &fields, const cardtext::Layout &layout)
{
    if (!layout.columnNames.isEmpty())
        return false;
    QStringList names;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (!layout.metaColumns.contains(int(i)))
            names << plain(fields[i]);
    }
    if (names.size() < 2)
        return false;

    static const QStringList notes = plain(kNoteNames);
    for (qsizetype i = 2; i < names.size(); ++i) {
        if (!names[i].isEmpty() && !notes.contains(names[i]))
            return false;
    }
    static const QList<Wording> wordings = [] {
        QList<Wording> out;
        for (const Wording &w : kWordings)
            out.append({plain(w.question), plain(w.answer)});
        return out;
    }();
    for (const Wording &w : wordings) {
        if (w.question.contains(names[0]) && w.answer.contains(names[1]))
            return true;
    }
    return false;
}

} // namespace headerrow
