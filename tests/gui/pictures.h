// Pictures of all dialogs, for a person to look at.
#pragma once

#include <string>

namespace bv::gui {

// Draws each dialog, filled from the sample server, into a .bmp file of the directory. The exit code of the program.
int DrawPictures(const std::string& directory);

// The same in white and yellow on black, as a person with weak eyes sets the system's colours; they are put back.
int DrawHighContrast(const std::string& directory);

} // namespace bv::gui
