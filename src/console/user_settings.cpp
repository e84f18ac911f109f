#include "console/user_settings.h"

#include <algorithm>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "platform/ascii.h"
#include "platform/environment.h"

namespace bv::console {
namespace {

using Values = std::vector<std::string>;

struct SharedOption {
    std::string_view Name; // in the file
    const char* Variable;  // in the environment
    bool IsList;           // several may be given
    GivenValues GlobalOptions::*Given;
};
constexpr SharedOption kShared[] = {
    {"ini", "BVCTL_INI", false, &GlobalOptions::Ini},
    {"drive", "BVCTL_DRIVE", true, &GlobalOptions::Drives},
    {"codepage", "BVCTL_CODEPAGE", false, &GlobalOptions::CodePage},
};

std::string Variable(const char* name) { return platform::TheEnvironment().Variable(name).value_or(""); }

// Where the user's file of settings lies; empty where there is no place for one.
std::string SettingsPath() {
    if (const std::string directory = Variable("XDG_CONFIG_HOME"); !directory.empty()) return directory + "/bvctl.ini";
    if (const std::string directory = Variable("APPDATA"); !directory.empty()) return directory + "\\bvctl.ini";
    const std::string home = Variable("HOME");
    return home.empty() ? "" : home + "/.config/bvctl.ini";
}

void FillFromEnvironment(GlobalOptions& global) {
    for (const SharedOption& option : kShared) {
        GivenValues& given = global.*option.Given;
        const std::string value = Variable(option.Variable);
        if (!given.Values.empty() || value.empty()) continue;
        given.Values = option.IsList ? CLI::detail::split(value, ';') : Values{value};
        given.From = option.Variable;
    }
}

std::string FillFromFile(const std::string& path, GlobalOptions& global) {
    for (const CLI::ConfigItem& item : CLI::ConfigINI().from_file(path)) {
        const auto isIt = [&](const SharedOption& option) { return EqualFolded(option.Name, item.name); };
        const auto* const option = std::ranges::find_if(kShared, isIt);
        if (!item.parents.empty() || option == std::end(kShared))
            return path + ": there is no setting " + item.fullname();
        if (item.inputs.empty() || (!option->IsList && item.inputs.size() > 1))
            return path + ": " + item.name + " takes one value; one with blanks stands in quotes";
        GivenValues& given = global.*option->Given;
        if (!given.Values.empty() && given.From != path) continue;
        given.Values.insert(given.Values.end(), item.inputs.begin(), item.inputs.end());
        given.From = path;
    }
    return {};
}

} // namespace

std::string FillGlobalOptions(GlobalOptions& global) {
    FillFromEnvironment(global);
    const std::string path = SettingsPath();
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error)) return {};
    try {
        return FillFromFile(path, global);
    } catch (const CLI::Error& fault) {
        return path + ": " + fault.what();
    }
}

} // namespace bv::console
