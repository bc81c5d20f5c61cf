// One line for a text area's document, what comparisons in tests show:
//   1[0,6)#0'alpha' / 1[6,10)#1'be|r:ta' / -'' / 2[0,4)#0'g:more'
// For each paragraph the block's id, the positions and the snippet of its item ("-" without one),
// and the text with a mark where the colour changes: r red, g grey, s call sign, c comment, y
// change, and upper case for a red character under such a format.
#ifndef DOCUMENTPRINTER_H
#define DOCUMENTPRINTER_H

#include "decodedtextcompat.h"
#include "decodedtextlayoutitem.h"

#include <QStringList>
#include <QTextDocument>
#include <QTextFragment>

/// What a format of the highlighter stands for, 0 for none that it makes.
inline char ColourName(const QTextCharFormat& format)
{
    if (format.background().style() == Qt::NoBrush) {
        return format.foreground().color() == QColor(100, 100, 100) ? 'g' : '\0';
    }
    const QString back = format.background().color().name();
    return back == "#00ff00" ? 's' : back == "#00ffff" ? 'c' : back == "#ffff00" ? 'y' : '?';
}

/// The colour of each character of \a paragraph, a blank for the ordinary one.
inline QByteArray Colours(const QTextBlock& paragraph)
{
    QByteArray colours(paragraph.length() - 1, ' ');
    for (QTextBlock::iterator it = paragraph.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (fragment.charFormat().foreground().color() == QColor(255, 0, 0)) {
            const int from = fragment.position() - paragraph.position();
            for (int i = from; i < from + fragment.length(); ++i) {
                colours[i] = 'r';
            }
        }
    }
    for (const QTextLayout::FormatRange& range :
         DecodedTextCompat::GetFormats(*paragraph.layout())) {
        const int to = qMin(range.start + range.length, static_cast<int>(colours.size()));
        for (int i = range.start; i < to; ++i) {
            const char name = ColourName(range.format);
            colours[i] = colours[i] == 'r' && name != 'g' ? static_cast<char>(name - 32) : name;
        }
    }
    return colours;
}

inline QString PrintParagraph(const QTextBlock& paragraph)
{
    const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    QString line = QLatin1String("-");
    if (item) {
        line =
            QString::fromLatin1("%1[%2,%3)#").arg(item->block->id).arg(item->start).arg(item->end);
        line += QString::number(item->snippetIndex);
    }
    const QByteArray colours = Colours(paragraph);
    line += QLatin1Char('\'');
    char colour = ' ';
    for (int i = 0; i < colours.size(); ++i) {
        if (colours.at(i) != colour) {
            line += QLatin1String(i > 0 ? "|" : "");
            colour = colours.at(i);
            line += colour == ' ' ? QString() : QString(QLatin1Char(colour)) + QLatin1Char(':');
        }
        line += paragraph.text().at(i);
    }
    return line + QLatin1Char('\'');
}

inline QString Print(const QTextDocument& document)
{
    QStringList lines;
    for (QTextBlock paragraph = document.begin(); paragraph.isValid();
         paragraph = paragraph.next()) {
        lines.append(PrintParagraph(paragraph));
    }
    return lines.join(QLatin1String(" / "));
}

#endif
