#pragma once

class QIcon;
class QWidget;

// The program's own look for its small windows: the dark card colours with
// white text and the blue of the card face for highlights.
namespace programstyle {

void ApplyDark(QWidget *window);
// The program's icon: two flash cards, the front one a card face.
QIcon ProgramIcon();

} // namespace programstyle
