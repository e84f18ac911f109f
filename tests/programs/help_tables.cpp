// help_tables DIRECTORY: writes the rows of keys in the help pages anew, as the tables of keys have them.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "users/user_entry.h"

namespace {

std::vector<bv::KeyHelp> AllKeys() {
    std::vector<bv::KeyHelp> keys;
    for (const bv::RecordKey& key : bv::RecordKeys())
        if (bv::HasKey(key, bv::RecordKind::User)) keys.push_back(bv::HelpOf(key, bv::RecordKind::User));
    return keys;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: help_tables DIRECTORY\n";
        return 2;
    }
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        if (entry.path().extension() != ".html") continue;
        std::ostringstream before;
        before << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        const std::string after = bv::WithHelpRows(before.str(), AllKeys());
        if (after != before.str()) std::ofstream(entry.path(), std::ios::binary) << after;
    }
}
