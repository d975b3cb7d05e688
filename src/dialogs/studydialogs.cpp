#include "studydialogs.h"

namespace studydialogs {

void ShowOptions() {}
void ShowFind() {}
void ViewAllCards() {}

} // namespace studydialogs
