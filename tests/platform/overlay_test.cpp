#include "platform/overlay_files.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/ascii.h"
#include "requests.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using platform::FileSystem;
using platform::OpenRequest;
using platform::OpenResult;
using platform::OverlayFiles;

// A directory on a file system, with up to three files of it open.
struct World {
    FileSystem& Files;
    std::string Directory;
    OpenResult Open[3];
};

std::string ShowError(FileError error) { return " error " + std::to_string(static_cast<int>(error)); }

std::string ReadAll(platform::File& file) {
    std::string bytes(file.Length().value_or(0), '\0');
    return bytes.substr(0, file.Read(0, bytes.data(), bytes.size()).Count);
}

// Does one thing that the numbers choose, and says what came of it.
std::string Step(World& world, const unsigned (&numbers)[5]) {
    static const char* const names[] = {"A.INI", "a.ini", "B.INI", "C.TXT", "SUB\\D.INI", "sub"};
    const std::string path = world.Directory + "\\" + names[numbers[1] % 6];
    OpenResult& open = world.Open[numbers[2] % 3];
    switch (numbers[0] % 11) {
    case 0: return "delete" + ShowError(world.Files.Delete(path));
    case 1: {
        const auto info = world.Files.Find(path);
        if (info && info->IsDirectory) return "directory";
        return info ? "found " + std::to_string(info->Length) : "not found";
    }
    case 2: {
        std::string text = "list";
        for (const std::string& name : world.Files.List(world.Directory, "*.INI")) text += " " + name;
        return text;
    }
    case 3:
    case 4: {
        OpenRequest request{Access::Read, static_cast<Deny>(numbers[3] % 3), static_cast<Creation>(numbers[4] % 4)};
        if (numbers[0] % 11 == 4) request.Wanted = Access::ReadWrite;
        if (MayWrite(request)) request.Denied = Deny::ReadingAndWriting; // so that no earlier reader looks on
        open = {};
        open = world.Files.Open(path, request);
        return "open" + ShowError(open.Error) + (open.Opened ? " " + ReadAll(*open.Opened) : "");
    }
    case 5: open = {}; return "close";
    case 6:
        if (!open.Opened) return "nothing to write";
        open.Opened->Write(numbers[3] % 8, std::string(numbers[4] % 5, static_cast<char>('a' + numbers[1] % 26)));
        return ReadAll(*open.Opened);
    case 7: return "make" + ShowError(world.Files.MakeDirectory(path));
    case 8:
        if (!world.Files.Find(path)) return "nothing to remove";
        for (OpenResult& opened : world.Open) opened = {};
        return "remove" + ShowError(world.Files.RemoveEmptyDirectory(path));
    case 9: {
        const std::string to = world.Directory + "\\" + names[numbers[3] % 6];
        const auto info = world.Files.Find(path);
        if (info && info->IsDirectory) return "directory";
        if (EqualFolded(path, to)) return "the same name"; // which some systems take for a change of case
        return "rename" + ShowError(world.Files.Rename(path, to));
    }
    default:
        if (!open.Opened) return "nothing to cut";
        open.Opened->SetLength(numbers[3] % 10);
        return ReadAll(*open.Opened);
    }
}

void Fill(World& world, const char* name, std::string_view contents) {
    const OpenRequest create{Access::ReadWrite, Deny::Nothing, Creation::CreateNew};
    world.Files.Open(world.Directory + "\\" + name, create).Opened->Write(0, contents);
}

// Whatever is done to it, an overlay behaves as the files of the system do, and so does one in memory alone.
TEST(Overlay, BehavesAsTheSystemsFilesDo) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const TemporaryDirectory real, under;
        OverlayFiles overlay(platform::Files()), memory;
        World worlds[] = {{platform::Files(), real.Path(), {}}, {overlay, under.Path(), {}}, {memory, "X:\\Y", {}}};
        for (const TemporaryDirectory* directory : {&real, &under}) directory->Write("A.INI", "first");
        Fill(worlds[2], "A.INI", "first");
        if (seed % 2 == 0) platform::Files().MakeDirectory(under.Path("SUB"));
        for (World& world : worlds) world.Files.MakeDirectory(world.Directory + "\\SUB");

        std::mt19937 random(seed);
        for (int i = 0; i < 100; ++i) {
            unsigned numbers[5];
            for (unsigned& number : numbers) number = static_cast<unsigned>(random());
            const std::string expected = Step(worlds[0], numbers);
            ASSERT_EQ(Step(worlds[1], numbers), expected) << "seed " << seed << " step " << i;
            ASSERT_EQ(Step(worlds[2], numbers), expected) << "seed " << seed << " step " << i << " in memory";
        }
        for (World& world : worlds) {
            for (OpenResult& open : world.Open) open = {};
        }
        EXPECT_EQ(under.Read("A.INI"), "first");
        EXPECT_FALSE(under.Has("B.INI") || under.Has("C.TXT"));
        for (const OverlayFiles::Change& change : overlay.Changes()) {
            const std::string name = UpperText(change.Path.substr(under.Path().size() + 1));
            if (name == "SUB") continue; // where a directory stands in the base
            EXPECT_EQ(change.Before.value_or("(missing)"), under.Read(name));
            EXPECT_NE(change.Before, change.After);
        }
    }
}

TEST(Overlay, ListsWhatHasChanged) {
    const TemporaryDirectory directory;
    for (const char* name : {"CHANGED", "DELETED", "REWRITTEN", "READ"}) directory.Write(name, "old");
    OverlayFiles overlay(platform::Files());
    const auto write = [&](const char* name, std::string_view bytes) {
        const OpenRequest request{Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateOrTruncate};
        EXPECT_EQ(overlay.Open(directory.Path(name), request).Opened->Write(0, bytes).Error, FileError::None);
    };
    write("Changed", "new");
    write("REWRITTEN", "new");
    write("rewritten", "old");
    write("CREATED", "");
    write("TEMPORARY", "x");
    EXPECT_EQ(overlay.Delete(directory.Path("TEMPORARY")), FileError::None);
    EXPECT_EQ(overlay.Delete(directory.Path("DELETED")), FileError::None);
    EXPECT_TRUE(overlay.Open(directory.Path("READ"), {}).Opened);

    std::string listed;
    for (const auto& [path, before, after] : overlay.Changes()) {
        listed += path.substr(directory.Path().size()) + ": " + before.value_or("none") + " -> " +
                  after.value_or("none") + "\n";
    }
    EXPECT_EQ(listed, "\\Changed: old -> new\n\\CREATED: none -> \n\\DELETED: old -> none\n");
    EXPECT_EQ(overlay.Open(directory.Path("NONE\\NEW"), {Access::ReadWrite, Deny::Nothing, Creation::CreateNew}).Error,
              FileError::NotFound);
}

TEST(Overlay, DeniesAsFilesDoAndHonoursTheBasesDenials) {
    const TemporaryDirectory directory;
    directory.Write("FILE", "x");
    const std::string path = directory.Path("FILE");
    for (std::size_t i = 0; i < std::size(kOpenings); ++i) {
        OverlayFiles overlay(platform::Files()), memory;
        const OpenRequest create{kOpenings[i].Request.Wanted, kOpenings[i].Request.Denied, Creation::CreateNew};
        const OpenResult inMemory = memory.Open("S:\\FILE", create);
        EXPECT_EQ(TryAllOpenings(memory, "s:\\file"), kSharing[i]) << "row " << i;
        {
            const OpenResult held = platform::Files().Open(path, kOpenings[i].Request);
            EXPECT_EQ(TryAllOpenings(overlay, path), kSharing[i]) << "row " << i << " held in the base";
        }
        const OpenResult held = overlay.Open(path, kOpenings[i].Request);
        EXPECT_EQ(TryAllOpenings(overlay, path), kSharing[i]) << "row " << i << " held in the overlay";
        EXPECT_EQ(TryAllOpenings(platform::Files(), path), kSharing[i]) << "row " << i << " held through the overlay";
        EXPECT_EQ(overlay.Delete(path), FileError::AccessDenied);
    }
    EXPECT_EQ(directory.Read("FILE"), "x");
}

} // namespace
} // namespace bv::test
