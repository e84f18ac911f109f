#include "console/password_input.h"

#include <algorithm>

#include "ctlfile/key_fields.h"
#include "lcr/stored_passwords.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv::console {

std::optional<std::string> ReadOnlyLine(const Session& session, std::string_view prompt, std::string_view what) {
    TextStreams& streams = session.Streams;
    if (streams.IsTerminal()) {
        streams.PrintNotice(FormatText("%s: ", prompt));
        std::optional<std::string> typed = streams.ReadHiddenLine();
        streams.PrintNotice("\n");
        if (typed) return typed;
    } else if (std::optional<std::string> line = streams.ReadLine()) {
        if (!streams.ReadLine()) return line;
        streams.PrintNotice("Standard input holds more than one line\n");
        return {};
    }
    if (streams.HasRefusedLine()) return {};
    streams.PrintNotice(FormatText("%s is a line of standard input\n", what));
    return {};
}

void WarnOfTypedPassword(const Session& session, std::string_view key, std::string_view value) {
    const std::string_view name = key.substr(key.rfind('/') + 1);
    if (value.empty() || value == kPasswordMark || !IsPasswordKey(name)) return;
    session.Streams.PrintNotice(FormatText("%s: a password among the arguments can be seen by others; use standard "
                                           "input\n",
                                           key));
}

std::optional<std::vector<Assignment>> ReadSettings(const Session& session, const Arguments& arguments,
                                                    std::string_view parameter, const std::string& passwordKey) {
    auto settings = ReadAssignments(session, arguments, parameter);
    if (!settings) return {};
    for (const auto& [key, value] : *settings) WarnOfTypedPassword(session, key, value);
    if (!arguments.Has(kPasswordStdin)) return settings;
    const auto isPassword = [&](const Assignment& setting) { return EqualFolded(setting.Key, passwordKey); };
    if (std::ranges::any_of(*settings, isPassword)) {
        session.Streams.PrintNotice(passwordKey + " is given twice\n");
        return {};
    }
    const std::optional<std::string> password = ReadOnlyLine(session, "Password", "The password");
    if (!password) return {};
    settings->push_back({passwordKey, *password});
    return settings;
}

std::optional<std::vector<Assignment>> ReadChanges(const Session& session, const Arguments& arguments,
                                                   std::string_view parameter, const std::string& passwordKey) {
    auto changes = ReadSettings(session, arguments, parameter, passwordKey);
    if (!changes || !changes->empty()) return changes;
    session.Streams.PrintNotice("What is to be set is missing\n");
    return {};
}

} // namespace bv::console
