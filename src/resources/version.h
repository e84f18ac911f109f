// The program's version, for the version block and the status line.
#pragma once

#define VERSION_NUMBERS 5, 50, 0, 0
#define VERSION_TEXT "5.50"
