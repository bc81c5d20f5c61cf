// One channel's panel: routes the model's news to caption and text area, and expands and collapses.
//
// The news come from the model by way of its dispatcher, and directly for changed properties. What
// is called in a text area may end in host code, which may remove this panel or destroy it with the
// whole view: DecodedTextChannelCall guards each such call. Invariant: `content` exists once the
// panel was expanded; it is visible exactly while `expanded`.

#include "decodedtextchannel.h"

#include "decodedtextcaption.h"
#include "decodedtextcompat.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextdispatcher.h"

#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTimerEvent>
#include <QVBoxLayout>

namespace {

const int kMargin = 2;  ///< pixels
const int kSpacing = 5; ///< pixels between caption and text area
const int kRetireDelayMs =
    50; ///< between two looks whether the text area of a retired panel came back

QString ToAscii(const QString& text)
{
    QString ascii = text;
    for (QChar& c : ascii) {
        if (c.unicode() >= 128) {
            c = QLatin1Char('?');
        }
    }
    return ascii;
}

} // namespace

/// Marks a panel as being on the stack for its lifetime, so that it is not deleted there by a
/// removal.
class DecodedTextChannelCall
{
public:
    explicit DecodedTextChannelCall(DecodedTextChannel* called)
        : panel(called)
    {
        ++panel->calls;
    }
    ~DecodedTextChannelCall()
    {
        if (panel) {
            --panel->calls;
        }
    }
    /// Whether the panel still lives.
    bool IsAlive() const { return !panel.isNull(); }

private:
    Q_DISABLE_COPY(DecodedTextChannelCall)
    QPointer<DecodedTextChannel> panel;
};

DecodedTextChannel::DecodedTextChannel(const QString& channelName, int channelNumber,
                                       DecodedTextData* ofModel, QWidget* parent)
    : QWidget(parent)
    , name(channelName)
    , channel(channelNumber)
    , userChannel(channelNumber == DecodedTextData::UserChannelID)
    , expanded(false)
    , style(DecodedTextCompat::CreatePlainStyle())
    , model(ofModel)
    , caption(nullptr)
    , content(nullptr)
    , layout(nullptr)
    , dispatcher(DecodedTextDispatcher::Of(ofModel))
    , tickerDue(false)
    , calls(0)
{
    setObjectName(ToAscii(name));
    setFocusPolicy(Qt::ClickFocus);
    setStyle(style);
    layout = new QVBoxLayout(this);
    layout->setObjectName(QLatin1String("ChannelLayout"));
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(0);
    caption = new DecodedTextCaption(name, userChannel, model->IsOffline(), this);
    layout->addWidget(caption);
    setMaximumHeight(sizeHint().height());
    NameParts();

    dispatcher->Register(this);
    connect(model, SIGNAL(PropertiesChanged()), SLOT(PropertiesChanged()));
    connect(caption, SIGNAL(OnActivate()), SLOT(ToggleTextArea()));
    if (caption->GetTickerLine()) {
        caption->installEventFilter(this);
        caption->GetTickerLine()->installEventFilter(this);
    }
}

DecodedTextChannel::~DecodedTextChannel()
{
    if (dispatcher) {
        dispatcher->Unregister(this);
    }
    setStyle(nullptr);
    delete style;
}

void DecodedTextChannel::SetName(const QString& newName)
{
    name = newName;
    caption->SetName(name);
    NameParts();
}

/// For screen readers: without it they can't tell the channels apart.
void DecodedTextChannel::NameParts()
{
    setAccessibleName(name);
    if (content) {
        content->SetChannelName(name);
    }
}

void DecodedTextChannel::FollowInFocus(const DecodedTextChannel& before)
{
    QWidget* const button = caption->GetActivateButton();
    QWidget* last = before.content;
    if (!last) {
        last = before.caption->GetActivateButton();
    }
    setTabOrder(last, button);
    if (content) {
        setTabOrder(button, content);
    }
}

void DecodedTextChannel::ToggleTextArea()
{
    ExpandTextArea(!expanded);
}

void DecodedTextChannel::ExpandTextArea(bool expand)
{
    if (expand == expanded) {
        return;
    }
    const DecodedTextChannelCall call(this);
    if (expand) {
        ShowContent();
        if (!call.IsAlive()) {
            return;
        }
    } else if (content) {
        content->hide();
        layout->activate(); // or the hint still counts the text area
        setMaximumHeight(sizeHint().height());
    }
    expanded = expand;
    caption->SetExpanded(expanded);
    Q_EMIT TextAreaChanged();
}

void DecodedTextChannel::MakeContent()
{
    content = new DecodedTextContent(channel, userChannel, model, this);
    layout->addSpacing(kSpacing);
    layout->addWidget(content);
    setTabOrder(caption->GetActivateButton(), content);
    NameParts();
    if (userChannel) {
        connect(content, SIGNAL(OnModification(bool)), caption, SLOT(setModified(bool)));
        connect(caption, SIGNAL(OnApply()), model, SLOT(ApplyUserChannel()));
    }
}

void DecodedTextChannel::ShowContent()
{
    if (!content) {
        if (!model) {
            return;
        }
        MakeContent();
    }
    const QPointer<DecodedTextChannel> self(this);
    setMaximumHeight(content->maximumHeight());
    content->RefreshContent();
    if (self) {
        content->show();
        layout->update();
    }
}

void DecodedTextChannel::DataChanged(int changedChannel, bool refresh)
{
    if (changedChannel != channel || !model) {
        return;
    }
    const DecodedTextChannelCall call(this);
    if (!caption->GetTickerLine()) {
        caption->setModified(false);
    } else if (!tickerDue) {
        if (dispatcher && !dispatcher->TakeTickerTurn(this)) {
            tickerDue = true;
        } else {
            SetTickerText();
        }
    }
    if (!call.IsAlive() || !content || !expanded) {
        return;
    }
    if (refresh) {
        content->RefreshContent();
    } else {
        content->UpdateContent();
    }
}

void DecodedTextChannel::SetTickerText()
{
    // The channel may have been removed since the news came; asking for its buffer would make it
    // anew.
    if (model && model->ChannelExists(channel)) {
        caption->GetTickerLine()->setText(
            model->GetChannelData(channel)->GetTickerText(caption->GetTickerChars()));
    }
}

void DecodedTextChannel::ShowTicker()
{
    if (tickerDue) {
        tickerDue = false;
        const DecodedTextChannelCall call(this);
        SetTickerText();
    }
}

void DecodedTextChannel::TransmissionChanged(int changedChannel)
{
    if (changedChannel == channel && content && expanded) {
        const DecodedTextChannelCall call(this);
        content->UpdateView(); // a busy text area remembers it
    }
}

void DecodedTextChannel::PropertiesChanged()
{
    if (!content || !model) {
        return;
    }
    const DecodedTextChannelCall call(this);
    content->UpdateColors();
    if (call.IsAlive() && model) {
        content->SetInfoAreaWidth(model->GetInfoAreaWidth());
    }
    if (call.IsAlive() && expanded) {
        content->RefreshContent();
    }
}

bool DecodedTextChannel::SelectCallSign(const QString& sign, bool selectionOnly)
{
    if (!content || !expanded) {
        return false;
    }
    const DecodedTextChannelCall call(this);
    return content->SelectCallSign(sign, selectionOnly);
}

bool DecodedTextChannel::eventFilter(QObject* watched, QEvent* event)
{
    // The filter sees a resize before the caption counts its characters anew: the text shown is the
    // one that was due.
    if (tickerDue && (event->type() == QEvent::Paint || event->type() == QEvent::Resize ||
                      event->type() == QEvent::Show)) {
        ShowTicker();
    }
    return QWidget::eventFilter(watched, event);
}

bool DecodedTextChannel::IsOnStack() const
{
    if (calls > 0) {
        return true;
    }
    return content &&
           (content->IsBusy() || content->IsDialogOpen() || content->IsDragging() ||
            (retiredBuffer && retiredBuffer->hold) || (dispatcher && dispatcher->IsHandingOver()));
}

void DecodedTextChannel::Retire()
{
    disconnect(this, SIGNAL(TextAreaChanged()), nullptr, nullptr);
    if (dispatcher) {
        dispatcher->Unregister(this);
    }
    caption->setModified(false);
    if (model) {
        disconnect(model, nullptr, this, nullptr);
        disconnect(caption, nullptr, model, nullptr);
        if (model->ChannelExists(channel)) {
            retiredBuffer = model->GetChannelData(channel);
        }
    }
    hide();
    setParent(nullptr);
    if (IsOnStack()) {
        retireTimer.start(0, this);
    } else {
        delete this;
    }
}

void DecodedTextChannel::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != retireTimer.timerId()) {
        QWidget::timerEvent(event);
    } else if (IsOnStack()) {
        retireTimer.start(kRetireDelayMs, this); // a nested event loop
    } else {
        delete this;
    }
}
