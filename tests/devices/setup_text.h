// SETUP.INI in the memory of a test server, as whole texts with "\n" for a line end.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {

inline const std::string kSetupFile = "F:\\BRIVANE\\B-DB\\SETUP.INI";
inline const std::string kSetupTemporary = "F:\\BRIVANE\\B-DB\\SETUP.TMP";

inline std::string WithLineEnds(const std::string& text) { return Replaced(text, "\n", "\r\n"); }

struct SetupServer : MemoryServer {
    explicit SetupServer(const std::string& setup) {
        Load();
        PutSetup(setup);
        Startup().SettingsChanged = false;
    }
    ~SetupServer() { Startup().SettingsChanged = false; }
    SetupServer(const SetupServer&) = delete;
    SetupServer& operator=(const SetupServer&) = delete;

    void PutSetup(const std::string& text) { Put(kSetupFile, WithLineEnds(text)); }

    // A CR that does not belong to a line end stays, and so shows.
    std::string GetSetup() { return Replaced(Get(kSetupFile), "\r\n", "\n"); }
};

// What a change leaves in SETUP.INI when one call to the file system after the other fails: each text once, in the
// order in which they first come. A change that reports that it is done although its text is not that of a run without
// any fault adds "(not reported)".
inline std::vector<std::string> TextsLeftByFaults(const std::string& before, const std::function<bool()>& change) {
    std::vector<std::string> texts;
    std::vector<std::string> believed;
    const auto add = [](std::vector<std::string>& to, const std::string& text) {
        if (std::ranges::find(to, text) == to.end()) to.push_back(text);
    };
    for (int call = 1;; ++call) {
        SetupServer server(before);
        FaultyFiles faulty(server.Files, {FaultKind::FailOnce, call});
        const platform::Substitute<platform::FileSystem> use(faulty);
        const bool done = change();
        if (done) add(believed, server.GetSetup());
        add(texts, server.GetSetup());
        if (!faulty.Fired()) break;
    }
    if (believed.size() != 1) texts.emplace_back("(not reported)");
    return texts;
}

} // namespace bv::test
