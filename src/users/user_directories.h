// The directories of users and user groups below the server's user area, and the files that the server expects there:
//
//   NAME\B-IN\MSGDIR.CTL       received messages
//   NAME\B-DB\USER.INI         personal settings
//   NAME\B-OUT\MSGDIR.CTL      messages to send; this and the following for users only
//   NAME\B-OUT\PREVIEW, \G3N, \G3F, \G3S
//   NAME\B-GRAPH               the user's graphics
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "users/user_file.h"

namespace bv {

// Makes the directories, empties those in B-OUT and writes the files, each of which is then there whole or as it was
// before; a MSGDIR.CTL that is there already stays, unless it is empty. Shows
// the status "Creating directory structure for user %s" (or "usergroup %s"). False after a message: one of
// CreateDirectoryPath, 413 (the template USER.INI), 5001, 5002, "Unable to create file %sMSGDIR.CTL for user" or
// "Unable to create file %sUSER.INI for user". What was made so far stays.
bool CreateUserDirectories(std::string_view name, std::string_view senderName, RecordKind kind);

// Removes the directories with their files, after the status "Deleting directory structure for user %s". A link in the
// place of a directory is removed, and nothing at its end. Always true: what cannot be deleted stays, and the status
// then is "Unable to delete directory %s".
bool DeleteUserDirectories(std::string_view name);

// What of them is there: the paths of the files and of the directories in which there are none.
std::vector<std::string> LeftOfUserDirectories(std::string_view name);

// The file writers. The first two leave a file alone that is there, and show nothing; the last copies the server's
// template with the sender's name as "From:" of its "[OPTIONS]".
bool CreateReceiveDirFile(std::string_view name);
bool CreateSendDirFile(std::string_view name);
bool WriteUserOptionsFile(std::string_view name, std::string_view senderName);

// Whether directories can have the name: not one that leads elsewhere, such as "" or "A\\..".
bool IsDirectoryName(std::string_view name);

} // namespace bv
