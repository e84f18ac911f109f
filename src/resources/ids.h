// The numbers of controls, commands and help pages, for the resource scripts and the dialogs alike.
#pragma once

// In every dialog
#define ID_HELP_BUTTON 1204
#define ID_STATUS_LINE 1210 // what the banner says

// Main window
#define ID_OPEN_MENU 101

// Function menu
#define ID_MENU_DEVICES 1000
#define ID_MENU_USERS 1001
#define ID_MENU_SETTINGS 1002
#define ID_MENU_ROUTING 1003
#define ID_MENU_COVLET 1004
#define ID_MENU_QUIT 1006

// Progress
#define ID_PROGRESS_NAME 1501
#define ID_PROGRESS_COUNT 5100
#define ID_PROGRESS_BAR 5102

// Coversheets and letterheads
#define ID_COVLET_LIST 1101
#define ID_COVLET_RENAME 1103
#define ID_COVLET_DELETE 1104
#define ID_COVLET_ADD 1105
#define ID_COVLET_COVERSHEETS 4000
#define ID_COVLET_LETTERHEADS 4001
#define ID_COVLET_EDIT 4006
#define ID_COVLET_COUNT 4007

// Their add and detail boxes
#define ID_ITEM_INSTALLED 1101
#define ID_ITEM_NEW 1105
#define ID_ITEM_FILE 4002
#define ID_ITEM_NEW_DESCRIPTION 4003
#define ID_ITEM_NAME 4005
#define ID_ITEM_DESCRIPTION 1106
#define ID_ITEM_VIEW 1205

// Help pages
#define HELP_MENU 100
#define HELP_COVLET 600
#define HELP_ADD_COVERSHEET 601
#define HELP_COVERSHEET 602
#define HELP_ADD_LETTERHEAD 603
#define HELP_LETTERHEAD 604
