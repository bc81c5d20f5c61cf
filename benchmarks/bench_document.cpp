// The document of an expanded channel: appending, painting, rebuilding, and the end of a
// transmission, each against what Qt's bare widget does with the same text.

#include "bench_rows.h"
#include "benchmark.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextview.h"
#include "documents.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QScopedPointer>
#include <QScrollBar>
#include <QSyntaxHighlighter>

namespace {

const int kHeld = 1000000;
const int kWidth = 900;
const int kHeight = 700;
const int kTransmission = 25; ///< documents, about 1,000 characters

/// A view with one expanded channel, and a bare editor of the same size and font, filled with the
/// same text.
class Pair
{
public:
    Pair(bool colorCoding, int documentsPerTransmission, bool shown)
        : ours(1)
        , same(1)
    {
        view.resize(kWidth, kHeight);
        view.SetBufferSize(10 * kHeld);
        ours.SetDocumentsPerTransmission(documentsPerTransmission);
        same.SetDocumentsPerTransmission(documentsPerTransmission);
        const QVector<QString> first = TakeDocuments(ours, 1);
        view.AddTransmission(first.first());
        content = view.findChild<DecodedTextContent*>();
        // The bulk of the text goes in while nobody looks at it.
        view.ShowChannel(1);
        content->SlotColorCoding(colorCoding);
        bare.setFont(content->font());
        bare.setLineWrapMode(QPlainTextEdit::WidgetWidth);
        bare.setReadOnly(true);
        bare.resize(kWidth, kHeight);
        if (shown) {
            view.show();
            bare.show();
        }
        QCoreApplication::processEvents();
        same.Next();
        AppendBare(same.Text());
        int held = 0;
        while (held < kHeld) {
            view.AddTransmission(ours.Next());
            same.Next();
            AppendBare(same.Text());
            held += static_cast<int>(ours.Text().size());
        }
        QCoreApplication::processEvents();
    }

    void AppendBare(const QString& text)
    {
        QTextCursor cursor(bare.document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(text);
    }

    DecodedTextView view{nullptr};
    QPlainTextEdit bare;
    DecodedTextContent* content;
    DocumentStream ours;
    DocumentStream same;
};

void Append(bool colorCoding)
{
    const int batch = 400;
    Pair pair(colorCoding, 0, false);
    Benchmark::Compare(
        QLatin1String(colorCoding ? "3b append, expanded, colour coding" : "3a append, expanded"),
        QLatin1String("QPlainTextEdit insertText"), colorCoding ? 1.35 : 1.25, 21,
        [&]() {
            const QVector<QString> documents = TakeDocuments(pair.ours, batch);
            return Benchmark::Cost(batch, [&]() {
                for (const QString& document : documents) {
                    pair.view.AddTransmission(document);
                }
            });
        },
        [&]() {
            const QVector<QString> texts = TakeTexts(pair.same, batch);
            return Benchmark::Cost(batch, [&]() {
                for (const QString& text : texts) {
                    pair.AppendBare(text);
                }
            });
        });
}

/// One painted frame for each append. The whole view paints its caption's ticker line besides,
/// which a bare editor has not.
void Painted(bool wholeView)
{
    const int batch = 60;
    Pair pair(false, 0, true);
    DecodedTextData model;
    model.SetBufferSize(10 * kHeld);
    model.SetInfoAreaWidth(0);
    DecodedTextContent alone(1, false, &model, nullptr);
    alone.resize(kWidth, kHeight);
    DocumentStream stream(1);
    if (!wholeView) {
        pair.view.hide();
        for (int held = 0; held < kHeld; held += static_cast<int>(stream.Text().size())) {
            model.AddTransmission(stream.Next());
        }
        alone.RefreshContent();
        alone.show();
        QCoreApplication::processEvents();
    }
    DecodedTextContent* content = wholeView ? pair.content : &alone;
    Benchmark::Compare(
        QLatin1String(wholeView ? "4b append, scroll, paint, whole view"
                                : "4a append, scroll, paint"),
        QLatin1String("QPlainTextEdit the same"), wholeView ? 0 : 1.25, 31,
        [&]() {
            const QVector<QString> documents = TakeDocuments(wholeView ? pair.ours : stream, batch);
            return Benchmark::Cost(batch, [&]() {
                for (const QString& document : documents) {
                    if (wholeView) {
                        pair.view.AddTransmission(document);
                    } else {
                        model.AddTransmission(document);
                        content->UpdateContent();
                    }
                    content->SlotScrollBottom();
                    QCoreApplication::processEvents();
                }
            });
        },
        [&]() {
            const QVector<QString> texts = TakeTexts(pair.same, batch);
            return Benchmark::Cost(batch, [&]() {
                for (const QString& text : texts) {
                    pair.AppendBare(text);
                    pair.bare.verticalScrollBar()->setValue(
                        pair.bare.verticalScrollBar()->maximum());
                    QCoreApplication::processEvents();
                }
            });
        });
}

void Rebuild()
{
    Pair pair(true, kTransmission, false);
    pair.view.EndTransmission();
    const QString text = pair.content->toPlainText();
    Benchmark::Compare(
        QLatin1String("5 RefreshContent"), QLatin1String("QPlainTextEdit setPlainText"), 3.5, 7,
        [&]() { return Benchmark::Cost(1, [&]() { pair.content->RefreshContent(); }); },
        [&]() { return Benchmark::Cost(1, [&]() { pair.bare.setPlainText(text); }); });
}

class GreyHighlighter : public QSyntaxHighlighter
{
public:
    explicit GreyHighlighter(QTextDocument* document)
        : QSyntaxHighlighter(document)
    {
        grey.setForeground(QColor(100, 100, 100));
    }
    void Toggle() { grey.setForeground(QColor(100, 100, 100 + (odd = !odd))); }

protected:
    void highlightBlock(const QString& text) override
    {
        setFormat(0, static_cast<int>(text.size()), grey);
    }

private:
    QTextCharFormat grey;
    bool odd = false;
};

void EndOfTransmission(bool manyTransmissions)
{
    Pair pair(false, manyTransmissions ? kTransmission : 0, false);
    GreyHighlighter highlighter(pair.bare.document());
    Benchmark::Compare(
        QLatin1String(manyTransmissions ? "6a end of a transmission, a thousand before it"
                                        : "6b end of a transmission of 1,000,000 characters"),
        QLatin1String("QSyntaxHighlighter rehighlight"), 0.1, 3,
        [&]() {
            if (!manyTransmissions) {
                // The whole text anew, in an open transmission.
                pair.view.Reset();
                QScopedPointer<Pair> again(new Pair(false, 0, false));
                return Benchmark::Cost(1, [&]() { again->view.EndTransmission(); });
            }
            pair.view.AddTransmission(pair.ours.Next());
            return Benchmark::Cost(1, [&]() { pair.view.EndTransmission(); });
        },
        [&]() {
            highlighter.Toggle();
            return Benchmark::Cost(1, [&]() { highlighter.rehighlight(); });
        });
}

} // namespace

void RunDocumentRows()
{
    if (Benchmark::IsWanted(QLatin1String("3 append"))) {
        Append(false);
        Append(true);
    }
    if (Benchmark::IsWanted(QLatin1String("4 paint"))) {
        Painted(false);
        Painted(true);
    }
    if (Benchmark::IsWanted(QLatin1String("5 RefreshContent"))) {
        Rebuild();
    }
    if (Benchmark::IsWanted(QLatin1String("6 end"))) {
        EndOfTransmission(true);
        EndOfTransmission(false);
    }
}
