// What a block gives to the host: its frames and annotations as a data block, and which part was
// edited since the last time. Positions become text indexes here, the only coordinate that the
// host's documents know; writing clears the export marks.

#include "datablock.h"
#include "decodedtextblock.h"
#include "decodedtextcoordinates.h"
#include "decodedtexttime.h"
#include "decodedtexttrace.h"
#include "sorvinresultdataexception.h"
#include "userdata.h"

using namespace DecodedTextCoordinates;

void DecodedTextBlock::MarkEdited(int pos)
{
    const int holder = snippets.IndexOfPosition(pos);
    if (holder >= 0) {
        snippets.KeepingLength(holder).flags |= DecodedTextSnippet::UserChanged;
    }
}

/// Index of the first snippet that was edited since the last hand-over, behind the last if none.
int DecodedTextBlock::FirstEdited() const
{
    int first = 0;
    while (first < snippets.size() && !snippets.at(first).Has(DecodedTextSnippet::UserChanged)) {
        ++first;
    }
    return first;
}

bool DecodedTextBlock::HasEditedData() const
{
    return FirstEdited() < snippets.size();
}

QString DecodedTextBlock::TakeEditedData()
{
    int first = FirstEdited();
    if (first == snippets.size()) {
        return QString();
    }
    while (first > 0 &&
           DecodedTextTime::Same(snippets.at(first - 1).time, snippets.at(first).time)) {
        --first;
    }
    const int from = snippets.at(first).start;
    if (from >= text.size()) {
        return QString();
    }
    DataBlock out(channel, from, 0);
    WriteFrames(&out, from, first);
    try {
        return out.GetXmlString();
    } catch (const SorvinResultDataXml::SorvinResultDataException& error) {
        // The marks are cleared already: the same edits are not tried again.
        DecodedTextTrace::Write(QString::fromLatin1("TakeEditedData: %1").arg(error.message),
                                "controls/decodedtextview/decodedtextdata", 920);
        return QString();
    }
}

int DecodedTextBlock::ExportedStart(int pos) const
{
    int i = snippets.FirstEndingBehind(pos);
    while (i < snippets.size() && snippets.at(i).IsGap()) {
        ++i;
    }
    if (i == snippets.size()) {
        return static_cast<int>(text.size());
    }
    return snippets.TextIndexOf(i) + qMax(0, pos - snippets.at(i).start);
}

int DecodedTextBlock::ExportedEnd(int pos) const
{
    const int i = snippets.FirstEndingBehind(pos);
    if (i == snippets.size()) {
        return static_cast<int>(text.size());
    }
    const DecodedTextSnippet& snippet = snippets.at(i);
    return snippets.TextIndexOf(i) + (snippet.IsGap() ? 0 : qMax(0, pos - snippet.start));
}

void DecodedTextBlock::WriteFrames(DataBlock* out, int fromPos, int fromIndex)
{
    out->SetID(id);
    int index = fromIndex < snippets.size() ? TextIndexOfPosition(snippets.at(fromIndex).start) : 0;
    for (int i = fromIndex; i < snippets.size(); ++i) {
        DecodedTextSnippet& snippet = snippets.KeepingLength(i);
        snippet.flags &= ~static_cast<quint32>(DecodedTextSnippet::UserChanged);
        out->SetTimeStamp(snippet.time);
        out->BeginFrame();
        out->AppendData(text.mid(index, snippet.length));
        out->EndFrame();
        index += snippet.length;
    }
    const int lastPos = GetLastPosition();
    for (const UserData* annotation : userData) {
        if (RangesOverlap(fromPos, lastPos, annotation->start, annotation->end)) {
            UserData* copy = new UserData(*annotation);
            copy->start = ExportedStart(annotation->start);
            copy->end = qMax(copy->start, ExportedEnd(annotation->end));
            out->AddUserData(copy);
        }
    }
    changed = false;
}
