// Passwords that a person gives: from standard input, where nobody else sees them, or among the arguments.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/assignments.h"

namespace bv::console {

inline constexpr std::string_view kPasswordStdin = "--password-stdin";
inline constexpr Parameter kPasswordFlag = {
    kPasswordStdin, "Read the password from standard input, or ask for it on a terminal", ParameterKind::Flag};

// The one line of standard input, asked for by the prompt and not shown when a person is there to type it. None, after
// a message, without a line or with more than one; `what` is what it should be.
std::optional<std::string> ReadOnlyLine(const Session& session, std::string_view prompt, std::string_view what);

// Says that a password which is given as an argument can be seen by others, if it is one.
void WarnOfTypedPassword(const Session& session, std::string_view key, std::string_view value);

// The assignments as ReadAssignments reads them, with a warning of passwords among them, and with --password-stdin the
// password as one more, under that key. None after a message.
std::optional<std::vector<Assignment>> ReadSettings(const Session& session, const Arguments& arguments,
                                                    std::string_view parameter, const std::string& passwordKey);

// The same; none, after a message, also when there is none at all.
std::optional<std::vector<Assignment>> ReadChanges(const Session& session, const Arguments& arguments,
                                                   std::string_view parameter, const std::string& passwordKey);

} // namespace bv::console
