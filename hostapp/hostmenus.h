#ifndef HOSTMENUS_H
#define HOSTMENUS_H

#include <QObject>

class FindBar;
class HostWindow;
class ChannelPanels;
class QAction;
class QMenu;
class TextAreas;

/// The main window's menus. Every command has a key that works wherever the keyboard focus is, in
/// text areas too, which take no keys themselves: marking text and annotating it need no mouse.
class HostMenus : public QObject
{
    Q_OBJECT

public:
    /// All arguments are borrowed and must outlive this object; \a hostWindow gets the menus.
    HostMenus(HostWindow* hostWindow, ChannelPanels* channelPanels, TextAreas* textAreas,
              FindBar* bar);

private Q_SLOTS:
    void OpenFiles();
    void SaveText();
    void Copy();
    void CopyWithTimes();
    void Move();
    void Annotate();
    void ShowAnnotationMenu();
    void NextText();
    void PreviousText();
    void ShowLegend();
    void ShowAbout();

private:
    void AddFileMenu();
    void AddEditMenu();
    void AddMarkMenu(QMenu* editMenu);
    void AddViewMenu();
    void AddAnnotateMenu();
    void AddHelpMenu();
    QMenu* AddMenu(const QString& title);
    QAction* Add(QMenu* menu, const QString& label, const char* keys, const QObject* receiver,
                 const char* slot);
    QAction* AddMove(QMenu* menu, const QString& label, const char* keys, int move, bool extend);
    void Say(const QString& message);

    HostWindow* window; ///< borrowed, as the next ones
    ChannelPanels* panels;
    TextAreas* areas;
    FindBar* findBar;
};

#endif
