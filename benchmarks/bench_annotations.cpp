// Annotations: storing, changing a word, exporting.

#include "bench_rows.h"
#include "benchmark.h"
#include "datablock.h"
#include "decodedtextdata.h"
#include "documents.h"
#include "sorvinresultdata.h"
#include "transmission.h"
#include "userdata.h"

#include <QScopedPointer>
#include <QXmlStreamWriter>

using SorvinResultDataXml::UserData;

namespace {

const int kHeld = 1000000;

/// A model whose channel 1 holds one open block of at least \a characters and \a annotations
/// comments spread over it.
class Annotated
{
public:
    Annotated(int characters, int annotations)
    {
        model.SetBufferSize(10 * kHeld);
        DocumentStream stream(1);
        int held = 0;
        while (held < characters) {
            model.AddTransmission(stream.Next());
            held += static_cast<int>(stream.Text().size());
        }
        block = model.GetChannelData(1)->GetLastBlock();
        for (int i = 0; i < annotations; ++i) {
            Comment(i * 20 + 2);
        }
    }

    void Comment(int pos)
    {
        UserData* comment = new UserData;
        comment->type = UserData::CommentType;
        comment->start = pos;
        comment->end = pos + 5;
        comment->text = block->GetText(pos, pos + 5);
        comment->comment = QLatin1String("looked at");
        model.SetUserData(block, comment, UserData::CommentType, pos, pos + 5);
    }

    double Store(int count)
    {
        const int annotations = static_cast<int>(block->userData.size());
        return Benchmark::Cost(count, [&]() {
            for (int i = 0; i < count; ++i) {
                Comment((i * 7919 % annotations) * 20 + 2);
            }
        });
    }

    DecodedTextData model;
    DecodedTextBlockPtr block;
};

void StoreComment()
{
    Annotated many(kHeld, 10000);
    Annotated few(kHeld, 10);
    Benchmark::Compare(
        QLatin1String("10 comment among 10,000"), QLatin1String("among 10"), 3, 11,
        [&]() { return many.Store(2000); }, [&]() { return few.Store(2000); });
}

void ChangeWord()
{
    Annotated held(kHeld, 0);
    DecodedTextBlock& block = *held.block;
    const int pos = kHeld / 2;
    QString text = block.text;
    Benchmark::Compare(
        QLatin1String("11 change of a word and its removal"), QLatin1String("QString::replace"), 20,
        31,
        [&]() {
            UserData* change = new UserData;
            change->type = UserData::ChangeType;
            change->start = pos;
            change->oldText = block.GetText(pos, pos + 5);
            change->text = QLatin1String("changed");
            change->end = pos + 7;
            return Benchmark::Cost(1, [&]() {
                held.model.SetUserData(held.block, change, UserData::ChangeType, pos, pos + 5);
                held.model.SetUserData(held.block, nullptr, UserData::ChangeType, pos, pos + 7);
            });
        },
        [&]() {
            const QString word = text.mid(pos, 5);
            return Benchmark::Cost(50, [&]() {
                for (int i = 0; i < 50; ++i) {
                    text.replace(pos, 5, QLatin1String("changed"));
                    text.replace(pos, 7, word);
                }
            });
        });
}

QString WriteByStreamWriter(const SorvinResultDataXml::SorvinResultData& data)
{
    using namespace SorvinResultDataXml;
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(QLatin1String("ResultData"));
    for (const Transmission* transmission : const_cast<SorvinResultData&>(data).GetTransmission()) {
        writer.writeStartElement(QLatin1String("Transmission"));
        for (const DataBlock* block : transmission->GetDataBlock()) {
            writer.writeStartElement(QLatin1String("DataBlock"));
            writer.writeAttribute(QLatin1String("channel"), QString::number(block->GetChannel()));
            for (const TimeStamp& stamp : block->GetTimeStamp()) {
                writer.writeStartElement(QLatin1String("TimeStamp"));
                writer.writeAttribute(QLatin1String("time"), stamp.time.toString(Qt::ISODate));
                writer.writeAttribute(QLatin1String("position"), QString::number(stamp.position));
                writer.writeAttribute(QLatin1String("quality"), QString::number(stamp.quality));
                writer.writeEndElement();
            }
            writer.writeTextElement(QLatin1String("Content"), block->GetContent());
            for (const UserData* annotation : block->GetUserData()) {
                writer.writeStartElement(QLatin1String("UserData"));
                writer.writeAttribute(QLatin1String("type"), annotation->type);
                writer.writeAttribute(QLatin1String("start"), QString::number(annotation->start));
                writer.writeAttribute(QLatin1String("end"), QString::number(annotation->end));
                writer.writeTextElement(QLatin1String("Text"), annotation->text);
                writer.writeTextElement(QLatin1String("Comment"), annotation->comment);
                writer.writeEndElement();
            }
            writer.writeEndElement();
        }
        writer.writeEndElement();
    }
    writer.writeEndElement();
    return xml;
}

void Export()
{
    Annotated held(kHeld, 1000);
    SorvinResultDataXml::SorvinResultData written;
    held.model.GetData(1, written, false);
    Benchmark::Compare(
        QLatin1String("12 GetData and its XML"), QLatin1String("QXmlStreamWriter, same document"),
        2, 9,
        [&]() {
            return Benchmark::Cost(1, [&]() {
                SorvinResultDataXml::SorvinResultData data;
                held.model.GetData(1, data, false);
                data.GetXmlString();
            });
        },
        [&]() { return Benchmark::Cost(1, [&]() { WriteByStreamWriter(written); }); });
}

} // namespace

void RunAnnotationRows()
{
    if (Benchmark::IsWanted(QLatin1String("10 comment"))) {
        StoreComment();
    }
    if (Benchmark::IsWanted(QLatin1String("11 change"))) {
        ChangeWord();
    }
    if (Benchmark::IsWanted(QLatin1String("12 GetData"))) {
        Export();
    }
}
