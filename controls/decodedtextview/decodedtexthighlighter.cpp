// Colours of closed and of annotated text, as formats on the paragraphs' layouts, on top of the
// characters' own formats.
//
// A paragraph's user state tells how it is formatted (bits below), so that the many that are
// neither closed nor annotated cost a glance. Formats are set straight on the layout and announced
// to the document once for all, which is what makes greying a whole transmission cheap.

#include "decodedtexthighlighter.h"

#include "decodedtextcompat.h"
#include "decodedtextcontent.h"
#include "decodedtextlayoutitem.h"
#include "userdata.h"

#include <QTextDocument>

using SorvinResultDataXml::UserData;

namespace {

enum FormattedAs { FormattedClosed = 1, FormattedAnnotated = 2 };

const int kParagraphsAtOnce = 1000;
const int kCachedLengths = 512;

int StateOf(const QTextBlock& paragraph)
{
    return qMax(0, paragraph.userState()); // -1: never set
}

QTextLayout::FormatRange RangeOf(int from, int length, const QTextCharFormat& format)
{
    QTextLayout::FormatRange range;
    range.start = from;
    range.length = length;
    range.format = format;
    return range;
}

/// The characters of a paragraph that annotation \a annotation colours, relative to the paragraph;
/// false: none.
bool ColouredPart(const UserData& annotation, const DecodedTextLayoutItem& item, int length,
                  int& from, int& to)
{
    const qint64 s = static_cast<qint64>(annotation.start) - item.start;
    const qint64 t = qMax(static_cast<qint64>(annotation.end) - item.start, s + 1);
    if (s > length || t < 0) {
        return false;
    }
    from = static_cast<int>(qMax<qint64>(s, 0));
    to = static_cast<int>(qMax<qint64>(qMin<qint64>(t, length), from));
    return to > from;
}

} // namespace

DecodedTextHighlighter::DecodedTextHighlighter(DecodedTextContent* served,
                                               const QTextCharFormat& base)
    : QSyntaxHighlighter(served->document())
    , content(served)
    , commentFormat(base)
    , callSignFormat(base)
{
    commentFormat.setBackground(QColor(0, 255, 255));
    callSignFormat.setBackground(QColor(0, 255, 0));
    changeFormat.setBackground(QColor(255, 255, 0));
    closedFormat.setForeground(QColor(100, 100, 100));
    // The text area says what to format, and when.
    QObject::disconnect(document(), SIGNAL(contentsChange(int, int, int)), this, nullptr);
}

void DecodedTextHighlighter::CollectFormats(const QTextBlock& paragraph,
                                            const DecodedTextLayoutItem& item,
                                            Formats& formats) const
{
    const int length = paragraph.length();
    QVector<UserData*> annotations;
    item.block->CollectCandidates(item.start - 1, item.start + length, annotations);
    if (annotations.isEmpty()) {
        if (item.block->closed) {
            formats.append(RangeOf(0, length, closedFormat));
        }
        return;
    }
    // The last format over a character wins.
    QVector<const QTextCharFormat*> painted(length, item.block->closed ? &closedFormat : nullptr);
    for (const UserData* annotation : annotations) {
        int from = 0;
        int to = 0;
        if (ColouredPart(*annotation, item, length, from, to)) {
            const QTextCharFormat* format =
                annotation->type == UserData::CallSignType ? &callSignFormat
                : annotation->type == UserData::ChangeType ? &changeFormat
                                                           : &commentFormat;
            std::fill(painted.begin() + from, painted.begin() + to, format);
        }
    }
    for (int from = 0; from < length;) {
        int to = from + 1;
        while (to < length && painted.at(to) == painted.at(from)) {
            ++to;
        }
        if (painted.at(from)) {
            formats.append(RangeOf(from, to - from, *painted.at(from)));
        }
        from = to;
    }
}

bool DecodedTextHighlighter::FormatParagraph(const QTextBlock& paragraph)
{
    const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    if (!item || !item->block) {
        return false;
    }
    const int before = StateOf(paragraph);
    if (before == 0 && !item->block->closed && item->block->userData.isEmpty()) {
        return false;
    }
    if (item->block->closed && item->block->userData.isEmpty() &&
        (before & FormattedAnnotated) == 0) {
        return FormatsAsClosed(paragraph);
    }
    if (!paragraph.layout()->preeditAreaText().isEmpty()) {
        // Being composed in: Qt knows how to keep the input method's formats, and announces the
        // change itself.
        rehighlightBlock(paragraph);
        return false;
    }
    Formats formats;
    CollectFormats(paragraph, *item, formats);
    int state = item->block->closed ? FormattedClosed : 0;
    const bool onlyClosed = formats.size() == 1 && formats.first().length == paragraph.length() &&
                            state == FormattedClosed &&
                            !formats.first().format.hasProperty(QTextFormat::BackgroundBrush);
    if (!formats.isEmpty() && !onlyClosed) {
        state |= FormattedAnnotated;
    }
    if (state == 0 && before == 0) {
        return false;
    }
    if (state == before && DecodedTextCompat::AreSameFormats(formats, *paragraph.layout())) {
        return false;
    }
    QTextBlock changed = paragraph;
    changed.setUserState(state);
    DecodedTextCompat::SetFormats(*changed.layout(), formats);
    return true;
}

/// The common case of a closed paragraph without annotations, which needs no list of its own.
bool DecodedTextHighlighter::FormatsAsClosed(const QTextBlock& paragraph)
{
    const int length = paragraph.length();
    QHash<int, Formats>::iterator formats = closedFormats.find(length);
    if (formats == closedFormats.end()) {
        if (closedFormats.size() >= kCachedLengths) {
            closedFormats.clear();
        }
        formats = closedFormats.insert(length, Formats(1, RangeOf(0, length, closedFormat)));
    }
    QTextBlock changed = paragraph;
    if (StateOf(paragraph) == FormattedClosed &&
        DecodedTextCompat::AreSameFormats(formats.value(), *paragraph.layout())) {
        return false;
    }
    changed.setUserState(FormattedClosed);
    DecodedTextCompat::SetFormats(*changed.layout(), formats.value());
    return true;
}

void DecodedTextHighlighter::FormatParagraphs(const QTextBlock& first, const QTextBlock& last)
{
    int dirtyFrom = -1;
    int dirtyTo = -1;
    for (QTextBlock paragraph = first; paragraph.isValid(); paragraph = paragraph.next()) {
        if (FormatParagraph(paragraph)) {
            dirtyFrom = dirtyFrom < 0 ? paragraph.position() : dirtyFrom;
            dirtyTo = paragraph.position() + paragraph.length();
        }
        if (paragraph == last) {
            break;
        }
    }
    if (dirtyFrom >= 0) {
        document()->markContentsDirty(dirtyFrom, dirtyTo - dirtyFrom);
    }
}

int DecodedTextHighlighter::FormatBack(QTextBlock paragraph)
{
    int docPos = -1;
    for (int done = 0; paragraph.isValid(); ++done) {
        const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
        if (!item || !item->block || !item->block->closed ||
            (StateOf(paragraph) & FormattedClosed) != 0) {
            break;
        }
        if (done == kParagraphsAtOnce) {
            waiting.append(QTextCursor(paragraph));
            break;
        }
        FormatParagraph(paragraph);
        docPos = paragraph.position();
        paragraph = paragraph.previous();
    }
    return docPos;
}

void DecodedTextHighlighter::FormatEnd()
{
    FormatBackFrom(document()->lastBlock());
}

void DecodedTextHighlighter::FormatWaiting()
{
    if (!waiting.isEmpty()) {
        const QTextBlock from = waiting.last().block();
        waiting.resize(waiting.size() - 1);
        FormatBackFrom(from);
    }
}

void DecodedTextHighlighter::FormatBackFrom(const QTextBlock& paragraph)
{
    const int endDocPos = paragraph.position() + paragraph.length();
    const int docPos = FormatBack(paragraph);
    if (docPos >= 0) {
        document()->markContentsDirty(docPos, endDocPos - docPos);
    }
}

void DecodedTextHighlighter::highlightBlock(const QString& text)
{
    Q_UNUSED(text);
    const QTextBlock paragraph = currentBlock();
    const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    if (!item || !item->block) {
        return;
    }
    Formats formats;
    CollectFormats(paragraph, *item, formats);
    for (const QTextLayout::FormatRange& range : formats) {
        setFormat(range.start, range.length, range.format);
    }
}
