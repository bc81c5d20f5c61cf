// The caption of a channel panel. The panel feeds the ticker line; the text area of the user
// channel reports modifications, the caption decides when they are applied. Invariant: the apply
// timer runs only while `modified` is set.

#include "decodedtextcaption.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {
const int kHeight = 20;      ///< pixels
const int kButtonWidth = 40; ///< pixels
const int kApplyDelayMs = 5000;
const int kInitialTickerChars = 100;
} // namespace

DecodedTextCaption::DecodedTextCaption(const QString& name, bool userChannel, bool offline,
                                       QWidget* parent)
    : QWidget(parent)
    , tickerLine(nullptr)
    , activateButton(nullptr)
    , channelLabel(nullptr)
    , applyTimer(nullptr)
    , autoApply(true)
    , modified(false)
    , expandIcon(QLatin1String(":/DecodedTextView/icon_expand.png"))
    , collapseIcon(QLatin1String(":/DecodedTextView/icon_collapse.png"))
    , tickerChars(kInitialTickerChars)
{
    setObjectName(QLatin1String("Caption"));
    setFixedHeight(kHeight);
    QHBoxLayout* const row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);

    channelLabel = new QLabel(this);
    channelLabel->setObjectName(QLatin1String("ChannelLabel"));
    channelLabel->setAutoFillBackground(true);
    channelLabel->setTextFormat(Qt::PlainText); // a name is never markup

    activateButton = new QPushButton(this);
    activateButton->setObjectName(QLatin1String("ChannelActivate"));
    activateButton->setFixedSize(kButtonWidth, kHeight);
    row->addWidget(channelLabel);
    row->addWidget(activateButton);
    if (!userChannel) {
        MakeTickerLine();
        row->addWidget(tickerLine);
    } else if (offline) {
        row->addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
    } else {
        MakeApplyTimer();
    }
    SetName(name);
    SetExpanded(false);
    connect(activateButton, SIGNAL(clicked()), SIGNAL(OnActivate()));
}

DecodedTextCaption::~DecodedTextCaption()
{
    delete applyTimer;
}

void DecodedTextCaption::MakeTickerLine()
{
    tickerLine = new QLineEdit(this);
    tickerLine->setObjectName(QLatin1String("TickerLine"));
    tickerLine->setFixedHeight(kHeight);
    tickerLine->setFrame(true);
    tickerLine->setReadOnly(true);
    tickerLine->setFocusPolicy(Qt::StrongFocus);
    tickerLine->setFocusProxy(this);
    tickerLine->setAccessibleDescription(tr("Newest text of the channel"));
}

void DecodedTextCaption::MakeApplyTimer()
{
    applyTimer = new QTimer;
    applyTimer->setSingleShot(true);
    applyTimer->setInterval(kApplyDelayMs);
    connect(applyTimer, SIGNAL(timeout()), SLOT(applyNow()));
}

void DecodedTextCaption::SetName(const QString& name)
{
    channelLabel->setText(name);
    setAccessibleName(name);
    channelLabel->setAccessibleName(name);
    activateButton->setAccessibleDescription(name);
    if (tickerLine) {
        tickerLine->setAccessibleName(name);
    }
}

void DecodedTextCaption::SetExpanded(bool expanded)
{
    const QString action = expanded ? tr("Collapse text view") : tr("Expand text view");
    activateButton->setIcon(expanded ? collapseIcon : expandIcon);
    activateButton->setToolTip(action);
    activateButton->setAccessibleName(action);
}

void DecodedTextCaption::setModified(bool isModified)
{
    if (!isModified) {
        Settle();
        return;
    }
    modified = true;
    if (autoApply && applyTimer) {
        applyTimer->start();
    }
}

void DecodedTextCaption::Settle()
{
    if (modified && applyTimer) {
        applyTimer->stop();
    }
    modified = false;
}

void DecodedTextCaption::applyNow()
{
    if (modified) {
        Settle();
        Q_EMIT OnApply();
    }
}

void DecodedTextCaption::setAutoApplyEnabled(bool enabled)
{
    autoApply = enabled;
}

void DecodedTextCaption::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (tickerLine) {
        const int charWidth = qMax(1, QFontMetrics(tickerLine->font()).averageCharWidth());
        tickerChars = 2 * contentsRect().width() / charWidth;
    }
}
