#include "ui/MenuBar.h"

#include <QMenu>

namespace cirrovane {

std::unique_ptr<QMenuBar> makeMenuBar(const MenuCommands& commands) {
  auto bar = std::make_unique<QMenuBar>();
  for (const MenuCommands::Menu& entry : commands.menus()) {
    QMenu* menu = bar->addMenu(entry.title);
    for (QAction* action : entry.actions) {
      if (action != nullptr) {
        menu->addAction(action);
      } else {
        menu->addSeparator();
      }
    }
  }
  return bar;
}

}  // namespace cirrovane
