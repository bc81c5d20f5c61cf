// Menus that outlive their widget for as long as they are on the stack. A widget announces its end
// before it deletes its children, which leaves time to take the menu away from it.

#include "decodedtextmenurun.h"

#include <QMenu>

DecodedTextMenuRun::DecodedTextMenuRun(QMenu* run)
    : menu(run)
{
}

void DecodedTextMenuRun::Exec(QMenu* menu, QWidget* widget, const QPoint& globalPos)
{
    DecodedTextMenuRun run(menu);
    connect(widget, SIGNAL(destroyed()), &run, SLOT(KeepMenu()), Qt::DirectConnection);
    menu->exec(globalPos);
    delete run.menu.data();
}

void DecodedTextMenuRun::KeepMenu()
{
    if (menu) {
        menu->setParent(nullptr, menu->windowFlags());
        menu->close();
    }
}
