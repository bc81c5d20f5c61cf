// One line for a block, what comparisons in tests show:
//   [0,6)'alpha ' [6,18)gap'\n\n' [18,22)'beta' {CallSign [0,5)'alpha'} open
// A block whose invariants are broken prints what is wrong instead.
#ifndef BLOCKPRINTER_H
#define BLOCKPRINTER_H

#include "decodedtextdata.h"
#include "userdata.h"

#include <QStringList>

inline QString PrintText(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

inline QString PrintRange(int from, int to)
{
    return QString::fromLatin1("[%1,%2)").arg(from).arg(to);
}

inline QString Print(const SorvinResultDataXml::UserData& annotation)
{
    const QString text = annotation.callSign + annotation.comment + annotation.text;
    return QLatin1Char('{') + annotation.type + QLatin1Char(' ') +
           PrintRange(annotation.start, annotation.end) + PrintText(text) + QLatin1Char('}');
}

inline QString Print(const DecodedTextBlock& block)
{
    const QString broken = block.CheckConsistency();
    if (!broken.isEmpty()) {
        return QLatin1String("BROKEN: ") + broken;
    }
    QStringList parts;
    int index = 0;
    for (const DecodedTextSnippet& snippet : block.snippets) {
        parts.append(PrintRange(snippet.start, snippet.end) +
                     QLatin1String(snippet.IsGap() ? "gap" : "") +
                     PrintText(block.text.mid(index, snippet.length)));
        index += snippet.length;
    }
    for (const SorvinResultDataXml::UserData* annotation : block.userData) {
        parts.append(Print(*annotation));
    }
    parts.append(QLatin1String(block.closed ? "closed" : "open"));
    return parts.join(QLatin1String(" "));
}

inline QString Print(const DecodedTextBuffer& buffer)
{
    QStringList parts;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        parts.append(Print(*block));
    }
    return parts.join(QLatin1String(" / "));
}

inline QString Print(DecodedTextData& model, int channel)
{
    return model.ChannelExists(channel) ? Print(*model.GetChannelData(channel))
                                        : QString::fromLatin1("no channel");
}

#endif
