// What tests of dialogs have in common: a copy of the sample server on the disk, a face that writes down what is said,
// and the files that the dialogs change, of which one is looked at most.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <utility>

#include "gui/disk_server.h"
#include "gui/gui.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/recording_front.h"

namespace bv::gui {

class DialogFixture : public testing::Test {
  protected:
    // By its path in the server's directory.
    explicit DialogFixture(std::string file) : file_(std::move(file)) {}

    void SetUp() override {
        Startup() = {};
        ASSERT_EQ(LoadServerPaths(), kDone);
        Before = File();
    }
    void TearDown() override { Startup() = {}; }

    [[nodiscard]] std::string File() const { return File(file_); }
    void Write(const std::string& text) const { Write(file_, text); }

    // Any file of the server; "(none)" for one that is not there.
    [[nodiscard]] std::string File(const std::string& name) const {
        return Server.Files().Has(name) ? Server.Files().Read(name) : "(none)";
    }
    void Write(const std::string& name, const std::string& text) const { Server.Files().Write(name, text); }

    // The file with the first such part replaced behind the mark; a part that is not there makes the test fail.
    [[nodiscard]] std::string With(const std::string& from, const std::string& to, const std::string& mark = "") const {
        std::string text = File();
        const std::size_t at = text.find(from, text.find(mark));
        EXPECT_NE(at, std::string::npos) << from;
        return at == std::string::npos ? text : text.replace(at, from.size(), to);
    }

    // Waits until something is said that has the text in it.
    [[nodiscard]] bool Says(const std::string& text) const {
        return Until([&] {
            return std::ranges::any_of(Front.Said, [&](const auto& said) { return said.find(text) != said.npos; });
        });
    }

    DiskServer Server;
    test::RecordingFront Front;
    std::string Before;

  private:
    std::string file_;
};

inline bool IsClosed(HWND dialog) {
    return Until([&] { return !IsWindow(dialog); });
}

} // namespace bv::gui
