// What a person does with a log-in to a mail system, and telling what this workstation has for it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mailgw/mail_library.h"
#include "mailgw/mail_session.h"

namespace bv {

// The interface of a mail system by the word that settings have for it, of the mail gateway ("EXCHANGE") or of
// least-cost routing ("LOTUS_NOTES_API"); none for a word of a system that is reached from the server alone.
std::optional<MailType> InterfaceOf(std::string_view system);

struct LoginPassword {
    std::string Text;
    bool IsStored = false; // scrambled, as a file has it
};

// What a log-in takes: a system by its word, the account or profile, and its password.
struct MailLogin {
    std::string System;
    std::string Name;
    LoginPassword Password;
};

// The mail gateway's of SETUP.INI. None after 413 or 9011.
std::optional<MailLogin> ReadGatewayLogin();

// Each logs in, does it, and logs out, as RunMailSession has it. False also after 9449 without a system, 9427 for one
// whose log-in cannot be tried here, and 5035 when the stored password cannot be read back. The test asks
// nobody anything, as nobody would be there to answer the server; status 9428.
bool TestMailLogin(const MailLogin& login, MailWait& wait);

// Deletes the gateway's messages with the subject from a folder (MailFolderName), when the person agrees (9429). Status
// 9448.
bool ClearMailFolder(const MailLogin& login, int folder, const std::string& subject, MailWait& wait);

// Has the person choose from the mail system's address book. None when nothing was chosen.
std::vector<std::string> PickMailNames(const MailLogin& login, MailWait& wait);

// The mail gateway's version, its generation as the option MailGatewayV6 has it, and its directory.
std::string DescribeGateway(std::string_view isV6);

// Which library this workstation has for a mail system, what names it, and whether it can be loaded.
std::string DescribeMailLibrary(std::string_view system);

} // namespace bv
