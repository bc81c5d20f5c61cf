// The main window's menus: commands of the program itself, and what the text areas offer with the
// mouse, for the keyboard. Works on the window's view through TextAreas and ChannelPanels.
#include "hostmenus.h"

#include "channelpanels.h"
#include "findbar.h"
#include "hostoutput.h"
#include "hostwindow.h"
#include "textareas.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextBlock>

namespace {

const int kMessageMs = 5000;

struct AnnotationEntry
{
    const char* label; // of the text areas' own menu
    const char* keys;
    const char* slot;
};

const AnnotationEntry kAnnotations[] = {
    {QT_TRANSLATE_NOOP("", "Define Call Sign"), "Ctrl+K", "EditCallSign"},
    {QT_TRANSLATE_NOOP("", "Insert Comment"), "Ctrl+M", "InsertComment"},
    {QT_TRANSLATE_NOOP("", "Insert Text"), "Ctrl+I", "InsertText"},
    {QT_TRANSLATE_NOOP("", "Edit Selection"), "Ctrl+R", "EditSelection"},
    {QT_TRANSLATE_NOOP("", "Delete Call Sign"), "Ctrl+Shift+K", "DeleteCallSign"},
    {QT_TRANSLATE_NOOP("", "Delete Comment"), "Ctrl+Shift+M", "DeleteComment"},
    {QT_TRANSLATE_NOOP("", "Delete Selection"), "Ctrl+Shift+R", "DeleteSelection"},
    {QT_TRANSLATE_NOOP("", "Delete Section"), "Ctrl+Shift+D", "DeleteSection"},
};

const char kMoveProperty[] = "move";
const char kExtendProperty[] = "extend";

/// They work wherever the keyboard is.
void SetKeys(QAction* action, const char* keys)
{
    action->setShortcut(QKeySequence(QLatin1String(keys)));
    action->setShortcutContext(Qt::ApplicationShortcut);
}

bool HasWord(const QTextCursor& cursor)
{
    return !cursor.selectedText().trimmed().isEmpty();
}

/// From \a cursor's place to the end of the word that is there; nothing among blanks.
QTextCursor WordFrom(QTextCursor cursor)
{
    cursor.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    return cursor;
}

/// The word around \a place; among blanks the one before it or else behind it in its paragraph.
QTextCursor WordAt(const QTextCursor& place)
{
    const QTextCursor::MoveOperation ways[] = {QTextCursor::StartOfWord, QTextCursor::PreviousWord,
                                               QTextCursor::NextWord};
    for (QTextCursor::MoveOperation way : ways) {
        QTextCursor word = place;
        word.movePosition(way);
        const bool isSameParagraph = word.block() == place.block();
        word = WordFrom(word);
        if (isSameParagraph && HasWord(word)) {
            return word;
        }
    }
    return place;
}

/// The word that \a move comes to from the start of \a selection; lines without words are passed
/// over. Where there is none the selection stays.
QTextCursor MovedToWord(const QTextCursor& selection, QTextCursor::MoveOperation move)
{
    const bool isByWord = move == QTextCursor::NextWord || move == QTextCursor::PreviousWord;
    QTextCursor cursor = selection;
    cursor.setPosition(selection.selectionStart());
    while (cursor.movePosition(move)) {
        const QTextCursor word = isByWord ? WordFrom(cursor) : WordAt(cursor);
        // A word may go on in the next line.
        if (HasWord(word) && word.selectionStart() != selection.selectionStart()) {
            return word;
        }
    }
    return selection;
}

void Select(QTextCursor& cursor, int from, int to)
{
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
}

/// To the end of the word at or behind the selection's end.
void ExtendByWord(QTextCursor& selection)
{
    QTextCursor place = selection;
    place.setPosition(selection.selectionEnd());
    while (!HasWord(WordFrom(place)) && place.movePosition(QTextCursor::NextWord)) {
    }
    const QTextCursor word = WordFrom(place);
    if (HasWord(word)) {
        const int from =
            selection.hasSelection() ? selection.selectionStart() : word.selectionStart();
        Select(selection, from, word.selectionEnd());
    }
}

/// To the end of the word before the last one; one word at least stays selected.
void ShrinkByWord(QTextCursor& selection)
{
    const int from = selection.selectionStart();
    QTextCursor last = selection;
    last.setPosition(selection.selectionEnd());
    last.movePosition(QTextCursor::PreviousWord);
    int to = last.position();
    while (to > from && selection.document()->characterAt(to - 1).isSpace()) {
        --to;
    }
    if (to > from) {
        Select(selection, from, to);
    }
}

/// Moves the selection of \a area. Every move leaves whole words selected, without blanks around
/// them, so that they can be annotated at once.
void MoveSelection(QPlainTextEdit* area, QTextCursor::MoveOperation move, bool extend)
{
    QTextCursor cursor = area->textCursor();
    if (!extend) {
        cursor = MovedToWord(cursor, move);
    } else if (move == QTextCursor::NextWord) {
        ExtendByWord(cursor);
    } else if (move == QTextCursor::PreviousWord) {
        ShrinkByWord(cursor);
    } else {
        Select(cursor, cursor.selectionStart(), cursor.selectionEnd());
        cursor.movePosition(move, QTextCursor::KeepAnchor);
    }
    area->setTextCursor(cursor);
}

} // namespace

HostMenus::HostMenus(HostWindow* hostWindow, ChannelPanels* channelPanels, TextAreas* textAreas,
                     FindBar* bar)
    : QObject(hostWindow)
    , window(hostWindow)
    , panels(channelPanels)
    , areas(textAreas)
    , findBar(bar)
{
    AddFileMenu();
    AddEditMenu();
    AddViewMenu();
    AddAnnotateMenu();
    AddHelpMenu();
}

QMenu* HostMenus::AddMenu(const QString& title)
{
    return window->menuBar()->addMenu(title);
}

QAction* HostMenus::Add(QMenu* menu, const QString& label, const char* keys,
                        const QObject* receiver, const char* slot)
{
    QAction* const action = menu->addAction(label);
    if (keys) {
        SetKeys(action, keys);
    }
    connect(action, SIGNAL(triggered()), receiver, slot);
    return action;
}

void HostMenus::AddFileMenu()
{
    QMenu* const menu = AddMenu(tr("&File"));
    Add(menu, tr("&Open Recording..."), "Ctrl+O", this, SLOT(OpenFiles()));
    Add(menu, tr("Save &Text..."), "Ctrl+S", this, SLOT(SaveText()));
    Add(menu, tr("&Export XML..."), "Ctrl+E", window, SLOT(Export()));
    menu->addSeparator();
    Add(menu, tr("&Quit"), "Ctrl+Q", window, SLOT(close()));
}

void HostMenus::AddEditMenu()
{
    QMenu* const menu = AddMenu(tr("&Edit"));
    Add(menu, tr("&Copy"), "Ctrl+C", this, SLOT(Copy()));
    Add(menu, tr("Copy with &Times"), "Ctrl+Shift+C", this, SLOT(CopyWithTimes()));
    AddMarkMenu(menu->addMenu(tr("&Select")));
    menu->addSeparator();
    Add(menu, tr("&Find..."), "Ctrl+F", findBar, SLOT(Open()));
    Add(menu, tr("Find &Next"), "F3", findBar, SLOT(FindNext()));
    Add(menu, tr("Find &Previous"), "Shift+F3", findBar, SLOT(FindPrevious()));
}

void HostMenus::AddMarkMenu(QMenu* menu)
{
    AddMove(menu, tr("&Next Word"), "Alt+Right", QTextCursor::NextWord, false);
    AddMove(menu, tr("&Previous Word"), "Alt+Left", QTextCursor::PreviousWord, false);
    AddMove(menu, tr("Word in the Line &Above"), "Alt+Up", QTextCursor::Up, false);
    AddMove(menu, tr("Word in the Line &Below"), "Alt+Down", QTextCursor::Down, false);
    menu->addSeparator();
    AddMove(menu, tr("&Extend by a Word"), "Alt+Shift+Right", QTextCursor::NextWord, true);
    AddMove(menu, tr("&Shrink by a Word"), "Alt+Shift+Left", QTextCursor::PreviousWord, true);
    AddMove(menu, tr("Extend to the &Line's End"), "Alt+Shift+End", QTextCursor::EndOfBlock, true);
}

QAction* HostMenus::AddMove(QMenu* menu, const QString& label, const char* keys, int move,
                            bool extend)
{
    QAction* const action = Add(menu, label, keys, this, SLOT(Move()));
    action->setProperty(kMoveProperty, move);
    action->setProperty(kExtendProperty, extend);
    return action;
}

void HostMenus::AddViewMenu()
{
    QMenu* const menu = AddMenu(tr("&View"));
    Add(menu, tr("&Expand All"), "Ctrl+Shift+E", panels, SLOT(ExpandAll()));
    Add(menu, tr("&Collapse All"), "Ctrl+Shift+W", panels, SLOT(CollapseAll()));
    menu->addSeparator();
    Add(menu, tr("&Next Text"), "F6", this, SLOT(NextText()));
    Add(menu, tr("&Previous Text"), "Shift+F6", this, SLOT(PreviousText()));
    menu->addSeparator();
    QAction* const merge = menu->addAction(tr("&Merged Channel"));
    merge->setObjectName(QLatin1String("MergeAction"));
    merge->setCheckable(true);
    merge->setChecked(window->IsMerging());
    SetKeys(merge, "Ctrl+G");
    connect(merge, SIGNAL(toggled(bool)), window, SLOT(SetMerging(bool)));
}

void HostMenus::AddAnnotateMenu()
{
    QMenu* const menu = AddMenu(tr("&Annotate"));
    for (const AnnotationEntry& entry : kAnnotations) {
        QAction* const action = Add(menu, QCoreApplication::translate("", entry.label), entry.keys,
                                    this, SLOT(Annotate()));
        action->setData(QByteArray(entry.slot));
    }
    menu->addSeparator();
    Add(menu, tr("&All That Applies Here..."), "Shift+F10", this, SLOT(ShowAnnotationMenu()));
}

void HostMenus::AddHelpMenu()
{
    QMenu* const menu = AddMenu(tr("&Help"));
    Add(menu, tr("&Colours and Marks"), "F1", this, SLOT(ShowLegend()));
    Add(menu, tr("&About"), nullptr, this, SLOT(ShowAbout()));
}

void HostMenus::OpenFiles()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        window, tr("Open Recording"), QString(), tr("Recordings (*.xml);;All files (*)"));
    if (!files.isEmpty()) {
        window->Open(files);
    }
}

void HostMenus::Say(const QString& message)
{
    window->statusBar()->showMessage(message, kMessageMs);
}

void HostMenus::SaveText()
{
    const QString file = QFileDialog::getSaveFileName(window, tr("Save Text"), QString(),
                                                      tr("Texts (*.txt);;All files (*)"));
    if (!file.isEmpty()) {
        window->Report(WriteText(file, *panels), tr("Text saved in %1").arg(file));
    }
}

void HostMenus::Copy()
{
    QPlainTextEdit* const area = areas->GetCurrent();
    if (area && area->textCursor().hasSelection()) {
        area->copy();
    } else {
        Say(tr("Nothing is selected"));
    }
}

void HostMenus::CopyWithTimes()
{
    const QString text = areas->GetSelectionWithTimes();
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    } else {
        Say(tr("Nothing is selected"));
    }
}

void HostMenus::Move()
{
    QPlainTextEdit* const area = areas->GetCurrent();
    if (!area) {
        return;
    }
    area->setFocus(Qt::ShortcutFocusReason);
    MoveSelection(
        area, static_cast<QTextCursor::MoveOperation>(sender()->property(kMoveProperty).toInt()),
        sender()->property(kExtendProperty).toBool());
}

void HostMenus::Annotate()
{
    const QAction* const action = qobject_cast<QAction*>(sender());
    const QString label = WithoutMnemonic(action->text());
    if (!areas->Annotate(action->data().toByteArray().constData(), label)) {
        Say(tr("%1: not possible for this text").arg(label));
    }
}

void HostMenus::ShowAnnotationMenu()
{
    areas->ShowMenu();
}

void HostMenus::NextText()
{
    areas->FocusOther(1);
}

void HostMenus::PreviousText()
{
    areas->FocusOther(-1);
}

void HostMenus::ShowLegend()
{
    QMessageBox::information(
        window, tr("Colours and Marks"),
        tr("<p><span style='background-color:white;color:#646464'>Grey text</span>: its "
           "transmission is finished and can't be annotated any more.</p>"
           "<p><span style='background-color:white;color:#ff0000'>Red text</span>: was decoded "
           "with poor quality (while "
           "\"Morse ColorCoding\" is on).</p>"
           "<p><span style='background-color:#00ff00;color:black'>Green</span>: a call sign. "
           "<span style='background-color:#00ffff;color:black'>Cyan</span>: a comment. "
           "<span style='background-color:#ffff00;color:black'>Yellow</span>: text that an "
           "operator "
           "changed. "
           "<span style='background-color:#ffaa3c;color:black'>Orange</span>: what the find bar "
           "found.</p>"
           "<p>A zigzag between two lines in the time column: characters were "
           "lost.</p>"));
}

void HostMenus::ShowAbout()
{
    QMessageBox::about(window, tr("About"),
                       tr("<p><b>decodedtexthost %1</b></p><p>Shows the text that decoders make of "
                          "received transmissions, channel by channel, and lets an operator "
                          "annotate it.</p>")
                           .arg(QCoreApplication::applicationVersion()));
}
