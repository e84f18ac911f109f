// Texts of mail lists.
#pragma once

#include <string>

namespace bv::test {

inline const std::string kMailList = "F:\\BRIVANE\\B-DB\\MAILLIST.INI";

inline std::string ListEntry(const std::string& user, const std::string& email,
                             const std::string& more = "Profile: NO\r\n") {
    return "[USER]\r\nBrivname: " + user + "\r\nEmailname: " + email + "\r\n" + more + "\r\n";
}

// What is said when a record has left.
inline std::string Prevented(const std::string& user) {
    return "status 1: Brivane user " + user + " prevented from using gateway for send messages";
}

} // namespace bv::test
