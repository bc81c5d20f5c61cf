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
#include <QTextCursor>
#include <QTextDocument>

/// What a format of the highlighter stands for, 0 for none that it makes.
inline char ColourName(const QTextCharFormat& format)
{
    if (format.background().style() == Qt::NoBrush) {
        return format.foreground().color() == QColor(100, 100, 100) ? 'g' : '\0';
    }
    const QString back = format.background().color().name();
    return back == "#00ff00" ? 's' : back == "#00ffff" ? 'c' : back == "#ffff00" ? 'y' : '?';
}

/// The colour of the character at \a index of \a paragraph, a blank for the ordinary one.
inline char ColourAt(const QTextBlock& paragraph, int index)
{
    QTextCursor cursor(paragraph);
    cursor.setPosition(paragraph.position() + index + 1);
    const bool red = cursor.charFormat().foreground().color() == QColor(255, 0, 0);
    char colour = red ? 'r' : ' ';
    for (const QTextLayout::FormatRange& range :
         DecodedTextCompat::GetFormats(*paragraph.layout())) {
        if (range.start <= index && index < range.start + range.length) {
            const char name = ColourName(range.format);
            colour = red && name != 'g' ? static_cast<char>(name - 32) : name;
        }
    }
    return colour;
}

inline QString PrintParagraph(const QTextBlock& paragraph)
{
    const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    QString line = QLatin1String("-'");
    if (item) {
        line = QString::fromLatin1("%1[%2,%3)#%4'")
                   .arg(item->block->id)
                   .arg(item->start)
                   .arg(item->end)
                   .arg(item->snippetIndex);
    }
    char last = ' ';
    for (int i = 0; i < paragraph.text().size(); ++i) {
        const char colour = ColourAt(paragraph, i);
        if (colour != last) {
            line += QLatin1String(i > 0 ? "|" : "");
            line += colour == ' ' ? QString() : QLatin1Char(colour) + QString::fromLatin1(":");
        }
        last = colour;
        line += paragraph.text().at(i);
    }
    return line + QLatin1Char('\'');
}

inline QString Print(const QTextDocument& document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        lines.append(PrintParagraph(block));
    }
    return lines.join(QLatin1String(" / "));
}

#endif
