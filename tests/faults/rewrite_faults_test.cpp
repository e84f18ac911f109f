// Every way to rewrite a control file, with every call to the file system failing in its turn, and what is left then.
#include <functional>
#include <optional>
#include <set>

#include <gtest/gtest.h>

#include "console/text_console.h"
#include "covlet/catalogue.h"
#include "ctlfile/copy_back.h"
#include "ctlfile/paths.h"
#include "ctlfile/rewriter.h"
#include "devices/device_list.h"
#include "options/server_options.h"
#include "options/telephone_types.h"
#include "platform/ascii.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/temporary_directory.h"
#include "users/user_rewrite.h"
#include "voice/format.h"

namespace bv::test {
namespace {

using platform::Access;
using platform::Creation;
using platform::Deny;
using platform::FileError;

constexpr ItemKind kKind = ItemKind::Coversheet;

const std::string kCatalogueFile = "B-COVER\\MSGDIR.CTL"; // below the system area, as the others
const std::string kUserListFile = "B-DB\\USERLIST.INI";
const std::string kSetupFile = "B-DB\\SETUP.INI";

// A server whose control file, that of an action, lies in memory or in a real directory.
class Scene {
  public:
    explicit Scene(const TemporaryDirectory* disk, const std::string& file = kCatalogueFile)
        : Files(disk != nullptr ? platform::Service<platform::FileSystem>::System() : server_.Files) {
        const std::string area = disk != nullptr ? disk->Path() : "F:\\BRIVANE";
        if (disk != nullptr) disk->Write(file, "");
        server_.Put("C:\\WINDOWS\\BRIVANE.INI", "[SERVER]\r\nAllUserArea: U\r\nRequestArea: R\r\nServerArea: S\r\n"
                                                "SystemArea: " +
                                                    area + "\r\n");
        server_.Put(area + "\\B-DB\\SETUP.INI", "");
        EXPECT_EQ(LoadServerPaths(), kDone);
        Control = Paths().SystemArea.String() + file;
        Temporary = TemporaryPath(Control);
    }

    void Put(const std::string& path, std::string_view text) const {
        const auto file = Files.Open(path, {Access::ReadWrite, Deny::Nothing, Creation::CreateOrTruncate});
        EXPECT_EQ(file.Opened->Write(0, text).Count, text.size());
    }

    // None without a file, and while anybody holds it.
    [[nodiscard]] std::optional<std::string> Get(const std::string& path) const {
        const auto file = Files.Open(path, {Access::Read, Deny::ReadingAndWriting});
        if (!file.Opened) return file.Error == FileError::NotFound ? std::nullopt : std::optional("(held)");
        std::string text(file.Opened->Length().value_or(0), '\0');
        EXPECT_EQ(file.Opened->Read(0, text.data(), text.size()).Count, text.size());
        return text;
    }

    // The errors shown since the last call, without the directory's name.
    std::vector<std::string> TakeErrors() {
        std::vector<std::string> errors;
        for (std::string said : Said().TakeSaid()) {
            if (!said.starts_with("error: ")) continue;
            const std::string_view directory = DirectoryPart(Control);
            const std::size_t at = said.find(directory);
            if (at != std::string::npos) said.erase(at, directory.size());
            errors.push_back(said.substr(7));
        }
        return errors;
    }
    RecordingFront& Said() { return server_.Front; }

  private:
    MemoryServer server_;

  public:
    platform::FileSystem& Files;
    std::string Control;
    std::string Temporary;
};

struct Action {
    const char* Name;
    std::string Before;
    std::function<bool(Scene&)> Run;
    std::set<std::string> Words;      // all that may be said, and each is said at some fault
    std::vector<std::string> Between; // whole texts on the way
    std::string File = kCatalogueFile;
    std::function<bool(Scene&)> Next = {}; // the next rewrite, when it is not the same again

    friend void PrintTo(const Action& action, std::ostream* out) { *out << action.Name; }
};

// Several changes in one rewrite; one that fails does not keep back the next.
bool SetBothKeys(Scene& scene) {
    Rewrite rewrite(scene.Control);
    if (!rewrite) return false;
    int changed = 0;
    for (const std::string_view key : {"k:", "m:"}) {
        changed += rewrite.Begin() && CopyReplacingKey(rewrite.Control, rewrite.Temporary, {"[A]", key, "longer"}) &&
                   rewrite.CopyBack();
    }
    return rewrite.Finish() && changed == 2;
}

auto Updating(const KeyChange& change) {
    return [change](const Scene& scene) { return UpdateControlFile(scene.Control, change); };
}

auto ReplacingBy(const std::string& text) {
    return [text](const Scene& scene) {
        Rewrite rewrite(scene.Control);
        return rewrite && rewrite.Temporary.Write(text) && rewrite.CopyBack() && rewrite.Finish();
    };
}

// What bvctl prints in the end counts as said.
auto Commanding(std::vector<std::string> arguments) {
    return [arguments](Scene& scene) mutable {
        arguments[2] = scene.Control;
        TextConsole console;
        const int status = console.Run(arguments);
        EXPECT_TRUE(status == 0 || status == 1) << status;
        const std::string lines = "\n" + console.Notices.substr(0, console.Notices.size() - 1);
        if (status != 0) scene.Said().Said.push_back("error: " + lines.substr(lines.rfind('\n') + 1));
        return status == 0;
    };
}

std::string Lines(std::size_t count, char filling) {
    std::string lines = "[L]\r\n";
    for (std::size_t i = 0; i < count; ++i) lines.append(62, filling).append("\r\n");
    return lines;
}

const std::string kKeys = "[A]\r\nk: 1\r\nm: 2\r\n\r\n[B]\r\nn: 3\r\n";
const std::string kRecords = "[S]\r\n@1: a\r\nx: 1\r\n@2: b\r\nx: 2\r\n";
const std::string kCatalogue = "[DIRECTORY]\r\nFile: ALPHA \"One\"\r\nFile: MEMO \"Two\"\r\n";
const std::string kNotOpened = "Unable to open file MSGDIR.CTL";
const std::string kNotUpdated = "Error updating file MSGDIR.CTL";
const std::set<std::string> kChangeWords = {kNotOpened, "Unable to open file MSGDIR.TMP", kNotUpdated};

std::string User(const std::string& name) { return "[USER]\r\nName: " + name + "\r\n\r\n"; }

const std::string kUsers = User("(d)\r\nX: 1") + User("BEN") + User("IRIS");

Action OfUserList(const char* name, const std::string& before, const std::function<bool()>& run) {
    return {name,
            before,
            [run](Scene&) { return run(); },
            {"Unable to open file USERLIST.INI", "Unable to create file USERLIST.TMP",
             "Error writing to file USERLIST.TMP", "Unable to update file USERLIST.INI"},
            {},
            kUserListFile};
}

// Adds so many users that the list is copied back in several pieces, and updates one.
bool ChangeManyUsers() {
    static const std::vector<NamedRecord> added = [] {
        std::vector<NamedRecord> many(40);
        for (NamedRecord& one : many) {
            one.Name = FormatText("N%.3d", &one - many.data());
            one.Record.Fullname = std::string(kCopyPiece / 15, 'x');
        }
        return many;
    }();
    static const std::vector<NamedRecord> updated = {{"IRIS", {}}};
    return ChangeUserRecords({added, updated}, RecordKind::User);
}

const std::string kSetup = "[OPTIONS]\r\nLCR: NO\r\n\r\n[QUEUEMAN]\r\nTelnumType: Local \"old\"\r\n\r\n"
                           "[DEVICES]\r\nDevice: M-1 \"One\"\r\n\r\n[M-1]\r\nPort: COM1\r\n";

Action OfSetup(const char* name, const std::function<bool()>& run) {
    return {name,
            kSetup,
            [run](Scene&) { return run(); },
            {"Unable to open file SETUP.INI", "Unable to open file SETUP.TMP", "Error updating file SETUP.INI"},
            {},
            kSetupFile};
}

// One key that differs from what the file is said to hold.
bool ChangePort() {
    Device device = NewDevice(DeviceType::Modem);
    device.AsRead.clear();
    for (const DeviceKey& key : DeviceKeys()) device.AsRead.emplace_back(key.Field.Text(device.Settings));
    device.Settings.Port = "COM2";
    return WriteDeviceSettings("M-1", device);
}
bool ChangeOption() {
    ServerOptions options;
    SavedOptions saved;
    for (const OptionKey& key : OptionKeys()) saved.emplace_back(key.Field.Text(options));
    options.LCR = true;
    return SaveServerOptions(options, saved);
}
bool ChangeTelephoneTypes() {
    TelephoneTypes saved;
    return SaveTelephoneTypes({{1, "Near"}, {2, "Far"}}, saved);
}

// The last ones are larger than what is copied by one call.
const Action kActions[] = {
    {"KeyGrows", kKeys, Updating({"[A]", "k:", "longer"}), {}, {}},
    {"KeyShrinks", kKeys, Updating({"[A]", "k:", ""}), {}, {}},
    {"KeyKeepsTheLength", kKeys, Updating({"[A]", "k:", "9"}), {}, {}},
    {"KeyMoves", kKeys, Updating({"[A]", "k:", "1", Placing::Append}), {}, {}},
    {"KeyGoes", kKeys, Updating({"[A]", "k:", {}}), {}, {}},
    {"ParagraphIsEmptied", kKeys, Updating({"[A]", {}, {}}), {}, {}},
    {"FirstText", "", Updating({"[A]", "k:", "1"}), {}, {}},
    {"NoTextAnyMore", kKeys, ReplacingBy(""), {}, {}},
    {"BothKeys",
     kKeys,
     SetBothKeys,
     {},
     {"[A]\r\nk: longer\r\nm: 2\r\n\r\n[B]\r\nn: 3\r\n", "[A]\r\nk: 1\r\nm: longer\r\n\r\n[B]\r\nn: 3\r\n"}},
    {"Record",
     kRecords,
     [](const Scene& scene) {
         return UpdateControlFileRecord(scene.Control, {"[S]", "@1:", "new", Placing::InPlace, "x:", "longer"});
     },
     {},
     {}},
    {"CatalogueEntryIsAdded",
     kCatalogue,
     [](Scene&) { return AddCatalogueEntry(kKind, "BETA", "New"); },
     {kNotOpened, "Could not create temporary MSGDIR.TMP file", "Could not replace MSGDIR.CTL file"},
     {}},
    {"CatalogueEntryIsChanged",
     kCatalogue,
     [](Scene&) { return ChangeCatalogueEntry(kKind, "ALPHA", "A longer one"); },
     kChangeWords,
     {}},
    {"CatalogueEntryGoes",
     kCatalogue,
     [](Scene&) { return DeleteCatalogueEntry(kKind, "ALPHA"); },
     kChangeWords,
     {},
     kCatalogueFile,
     [](Scene&) {
         return IsCatalogued(kKind, "ALPHA") ? DeleteCatalogueEntry(kKind, "ALPHA") : AddCatalogueEntry(kKind, "Z", "");
     }},
    OfUserList("UserIsAdded", kUsers, [] { return AddUserRecord("CLARA", {}, RecordKind::User); }),
    OfUserList("UserIsUpdated", kUsers, [] { return UpdateUserRecord("BEN", {}, RecordKind::User); }),
    // twice in the list, for the next rewrite deletes one, too
    OfUserList("UserGoes", kUsers + kUsers, [] { return DeleteUserRecord("BEN", RecordKind::User); }),
    OfSetup("DeviceIsListed", [] { return UpdateDeviceList("M-2", "Two", {.Printers = true}); }),
    OfSetup("DeviceIsTakenOut", [] { return UpdateDeviceList("M-1", std::nullopt); }),
    OfSetup("DeviceKeyIsChanged", ChangePort),
    OfSetup("OptionIsChanged", ChangeOption),
    OfSetup("TelephoneTypesAreChanged", ChangeTelephoneTypes),
    {"CommandSets", kKeys, Commanding({"file", "set", "", "A", "k", "longer"}), {kNotOpened, kNotUpdated}, {}},
    OfUserList("ManyUsersAreChanged", kUsers, ChangeManyUsers),
    {"KeyOfALargeFile", Lines(1'100, 'a') + kKeys, Updating({"[A]", "k:", "longer"}), {}, {}},
    {"LargeFileGrows", Lines(2'100, 'a'), ReplacingBy(Lines(4'200, 'b')), {}, {}},
    {"LargeFileShrinks", Lines(4'200, 'a'), ReplacingBy(Lines(2'100, 'b')), {}, {}},
    {"LargeFileKeepsItsLength", Lines(3'000, 'a'), ReplacingBy(Lines(3'000, 'b')), {}, {}},
};

enum class Aftermath {
    Tidy,          // a whole text, the temporary gone
    TidyButOneRun, // the same, but in the run in which deleting the temporary is what fails
    Untidy,        // as after a kill: nothing could be put back or deleted
    Killed,        // a whole text in the file or in the temporary, and the next rewrite works
};

struct Fault {
    const char* Name;
    FaultPlan Plan;
    Aftermath Left;
};

const Fault kFaults[] = {
    {"a change fails", {FaultKind::FailOnce}, Aftermath::TidyButOneRun},
    {"no room once", {FaultKind::FailOnce, 0, CallKind::Changes, FileError::DiskFull}, Aftermath::TidyButOneRun},
    {"short write", {FaultKind::ShortWrite}, Aftermath::TidyButOneRun},
    {"changes fail for ever", {FaultKind::FailFromThenOn}, Aftermath::Untidy},
    {"no room for ever", {FaultKind::FailFromThenOn, 0, CallKind::Changes, FileError::DiskFull}, Aftermath::Untidy},
    {"a look fails", {FaultKind::FailOnce, 0, CallKind::Looks}, Aftermath::Tidy},
    {"a look is refused", {FaultKind::FailOnce, 0, CallKind::Looks, FileError::AccessDenied}, Aftermath::Tidy},
    {"looks fail for ever", {FaultKind::FailFromThenOn, 0, CallKind::Looks}, Aftermath::Tidy},
    {"killed at a look", {FaultKind::Kill, 0, CallKind::Looks}, Aftermath::Killed},
    {"killed at a change", {FaultKind::Kill}, Aftermath::Killed},
    {"killed half-way through a write", {FaultKind::KillHalfWritten}, Aftermath::Killed},
};

class RewriteFaults : public testing::TestWithParam<std::tuple<bool, Action>> {
  protected:
    // What a run has left; the texts by their names.
    struct Run {
        bool Fired;
        bool Done;
        std::string Control;
        std::string Temporary;
        std::vector<std::string> Errors;
    };

    RewriteFaults() : scene_(std::get<bool>(GetParam()) ? &disk_.emplace() : nullptr, action_.File) {}
    ~RewriteFaults() override { Startup().SettingsChanged = false; }

    // The new text, made over a stale temporary that is longer.
    void FindAfter() {
        scene_.Put(scene_.Control, action_.Before);
        scene_.Put(scene_.Temporary, std::string(3'000'000, 's'));
        ASSERT_TRUE(RunAgain());
        ASSERT_FALSE(scene_.Get(Saved()));
        after_ = scene_.Get(scene_.Control).value_or("(none)");
        ASSERT_NE(after_, action_.Before);
    }

    // Without faults; whether it went well and left no temporary.
    bool RunAgain() {
        const platform::Substitute<platform::FileSystem> use(scene_.Files);
        const bool done = action_.Next ? action_.Next(scene_) : action_.Run(scene_);
        return done && scene_.TakeErrors().empty() && !scene_.Get(scene_.Temporary);
    }

    Run RunUnder(const FaultPlan& plan) {
        scene_.Put(scene_.Control, action_.Before);
        scene_.Files.Delete(scene_.Temporary);
        scene_.Files.Delete(Saved());
        FaultyFiles faulty(scene_.Files, plan);
        const platform::Substitute<platform::FileSystem> use(faulty);
        const bool done = action_.Run(scene_);
        return {faulty.Fired(), done, NameOf(scene_.Get(scene_.Control)), NameOf(scene_.Get(scene_.Temporary)),
                scene_.TakeErrors()};
    }

    // "" when the run kept the promises that hold after an error, else what is wrong.
    std::string FaultAfterError(const Run& run, Aftermath left) {
        if (run.Done && run.Control != "new") return "success without the new text";
        if (run.Errors.size() != (run.Done || action_.Words.empty() ? 0U : 1U)) return "not one message for a failure";
        heard_.insert(run.Errors.begin(), run.Errors.end());
        if (left == Aftermath::Untidy) return FaultAfterKill(run);
        if (!run.Done && run.Control == "new" && run.Temporary == "new") return ""; // it did not close well
        if (run.Control == "torn") return "no whole text";
        const bool passedOver = left == Aftermath::TidyButOneRun && run.Fired && run.Done;
        if (run.Temporary == "none") return passedOver ? "success in spite of a failed change" : "";
        return passedOver && run.Temporary == "new" && ++undeleted_ == 1 ? "" : "a temporary is left";
    }

    static std::string FaultAfterKill(const Run& run) {
        if (run.Control == "none") return "no control file";
        if (run.Control != "torn") return "";
        return run.Temporary == "new" || run.Temporary == "between" ? "" : "no whole text anywhere";
    }

    std::string FaultAfterward(const Run& run) {
        if (!RunAgain()) return "the next rewrite fails";
        if (run.Control == "torn" && NameOf(scene_.Get(Saved())) != run.Temporary) return "the only whole text is gone";
        return run.Control != "old" || NameOf(scene_.Get(scene_.Control)) == "new" ? "" : "the next rewrite is wrong";
    }

    std::string FaultOf(const Run& run, Aftermath left) {
        if (left != Aftermath::Killed) return FaultAfterError(run, left);
        const std::string fault = FaultAfterKill(run);
        return fault.empty() ? FaultAfterward(run) : fault;
    }

    const Action& action_ = std::get<Action>(GetParam());
    std::set<std::string> heard_;
    int undeleted_ = 0;

  private:
    [[nodiscard]] std::string Saved() const { return WithExtension(scene_.Control, "SAV"); }

    [[nodiscard]] std::string NameOf(const std::optional<std::string>& text) const {
        if (!text) return "none";
        if (*text == action_.Before) return "old";
        if (*text == after_) return "new";
        const auto& between = action_.Between;
        return std::find(between.begin(), between.end(), *text) != between.end() ? "between" : "torn";
    }

    std::optional<TemporaryDirectory> disk_;
    Scene scene_;
    std::string after_;
};

TEST_P(RewriteFaults, LeaveAWholeTextAndAreSaid) {
    ASSERT_NO_FATAL_FAILURE(FindAfter());
    for (const Fault& fault : kFaults) {
        undeleted_ = 0;
        FaultPlan plan = fault.Plan;
        for (bool fired = true; fired;) {
            ++plan.AtCall;
            const Run run = RunUnder(plan);
            fired = run.Fired;
            EXPECT_EQ(FaultOf(run, fault.Left), "")
                << fault.Name << ", call " << plan.AtCall << ": " << (run.Done ? "done" : "failed") << ", "
                << run.Control << " text, temporary: " << run.Temporary;
            EXPECT_TRUE(fired || run.Done) << fault.Name;
        }
        EXPECT_GT(plan.AtCall, 4) << fault.Name << ": hardly anything has failed";
    }
    EXPECT_EQ(heard_, action_.Words);
}

INSTANTIATE_TEST_SUITE_P(All, RewriteFaults, testing::Combine(testing::Bool(), testing::ValuesIn(kActions)),
                         [](const auto& one) {
                             return std::string(std::get<Action>(one.param).Name) +
                                    (std::get<bool>(one.param) ? "_OnDisk" : "_InMemory");
                         });

// A file in memory that takes so many writes and then never one again.
class WornFile final : public platform::File {
  public:
    WornFile(std::string& text, int writesLeft, FileError atClose = FileError::None)
        : text_(text), writesLeft_(writesLeft), atClose_(atClose) {}
    platform::Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) override {
        return {text_.copy(bytes, size, static_cast<std::size_t>(offset)), FileError::None};
    }
    platform::Transfer Write(std::uint64_t offset, std::string_view bytes) override {
        if (writesLeft_-- <= 0) return {0, FileError::Failed};
        const auto start = static_cast<std::size_t>(offset);
        text_.resize(std::max(text_.size(), start + bytes.size()));
        text_.replace(start, bytes.size(), bytes);
        return {bytes.size(), FileError::None};
    }
    std::optional<std::uint64_t> Length() override { return text_.size(); }
    FileError SetLength(std::uint64_t length) override {
        text_.resize(static_cast<std::size_t>(length));
        return FileError::None;
    }
    std::optional<std::int64_t> WriteTime() override { return 0; }
    FileError SetWriteTime(std::int64_t) override { return FileError::None; }
    FileError Close() override { return atClose_; }

  private:
    std::string& text_;
    int writesLeft_;
    FileError atClose_;
};

TEST(RewriteFaults, WhatDidNotChangeIsNotWrittenBack) {
    const Scene scene(nullptr);
    std::string text = Lines(20'000, 'a');
    std::string changed = text;
    changed[2 * kCopyPiece + 1] = 'b';
    scene.Put(scene.Control, "");
    Rewrite rewrite(scene.Control);
    rewrite.Control = ControlStream(std::make_unique<WornFile>(text, 1), scene.Control);
    for (int times = 0; times < 2; ++times) {
        ASSERT_TRUE(rewrite.Begin() && rewrite.Temporary.Write(changed));
        EXPECT_TRUE(rewrite.CopyBack()) << "one write is enough for one change, and none for none";
        EXPECT_TRUE(text == changed);
    }
}

TEST(RewriteFaults, WhatCannotBePutBackIsCutAndItsTemporaryStays) {
    for (const std::size_t lines : {10'000U, 20'000U, 30'000U}) { // shorter, as long, longer
        const Scene scene(nullptr);
        const std::string newText = Lines(lines, 'b');
        std::string text = Lines(20'000, 'a');
        scene.Put(scene.Control, "");
        Rewrite rewrite(scene.Control);
        const std::size_t growth = newText.size() - std::min(text.size(), newText.size());
        const auto growths = static_cast<int>((growth + kCopyPiece - 1) / kCopyPiece);
        rewrite.Control = ControlStream(std::make_unique<WornFile>(text, growths + 1), scene.Control);
        ASSERT_TRUE(rewrite.Begin() && rewrite.Temporary.Write(newText));
        EXPECT_FALSE(rewrite.CopyBack());
        EXPECT_TRUE(text == newText.substr(0, kCopyPiece)) << text.size();
        EXPECT_FALSE(rewrite.Begin()) << "the only whole text would go";
        EXPECT_TRUE(rewrite.Finish());
        EXPECT_TRUE(scene.Get(scene.Temporary) == newText);
    }
}

// As a share does that finds only then that it has no room.
TEST(RewriteFaults, WhatDoesNotCloseWellKeepsItsTemporary) {
    const Scene scene(nullptr);
    const std::string newText = Lines(2, 'b');
    std::string text = Lines(1, 'a');
    scene.Put(scene.Control, "");
    Rewrite rewrite(scene.Control);
    rewrite.Control = ControlStream(std::make_unique<WornFile>(text, 9, FileError::DiskFull), scene.Control);
    EXPECT_TRUE(rewrite.Begin() && rewrite.Temporary.Write(newText) && rewrite.CopyBack());
    EXPECT_FALSE(rewrite.Finish());
    EXPECT_EQ(scene.Get(scene.Temporary), newText);
}

} // namespace
} // namespace bv::test
