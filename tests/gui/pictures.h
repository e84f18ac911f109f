// Pictures of all dialogs, for a person to look at.
#pragma once

#include <string>

namespace bv::gui {

// Draws each dialog, filled from the sample server, into a .bmp file of the directory. The exit code of the program.
int DrawPictures(const std::string& directory);

} // namespace bv::gui
