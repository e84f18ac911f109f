// Every allocation of a change fails in its turn; the control file is then the old or the new one, and whole.
#include <cstdlib>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "covlet/catalogue.h"
#include "ctlfile/copy_back.h"
#include "ctlfile/rewriter.h"
#include "ctlfile/whole_file.h"
#include "platform/environment.h"
#include "shell/server_paths.h"
#include "support/recording_front.h"
#include "support/temporary_directory.h"
#include "users/user_rewrite.h"

namespace {

int allocationsLeft = -1; // until one fails; negative: none does

void* Allocate(std::size_t size) noexcept {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0) return nullptr;
    return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

} // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace bv::test {
namespace {

std::string Lines(std::size_t count, char filling) {
    std::string lines = "[A]\r\n";
    for (std::size_t i = 0; i < count; ++i) lines.append(62, filling).append("\r\n");
    return lines;
}

// A change of a control file that lies on the disk; whether it was made.
struct Action {
    const char* Name;
    const char* File;
    std::string Before;
    std::function<bool(const std::string& path)> Run;
};

bool ReplaceBy(const std::string& path, const std::string& text) {
    Rewrite rewrite(path);
    return rewrite && rewrite.Temporary.Write(text) && rewrite.CopyBack() && rewrite.Finish();
}

const Action kActions[] = {
    {"key", "B-DB\\SETUP.INI", Lines(1100, 'a') + "k: 1\r\n",
     [](const std::string& path) {
         return UpdateControlFile(path, {"[A]", "k:", "longer"});
     }},
    {"large file grows", "B-DB\\SETUP.INI", Lines(1100, 'a'),
     [](const std::string& path) { return ReplaceBy(path, Lines(2100, 'b')); }},
    {"large file shrinks", "B-DB\\SETUP.INI", Lines(2100, 'a'),
     [](const std::string& path) { return ReplaceBy(path, Lines(1100, 'b')); }},
    {"catalogue", "B-COVER\\MSGDIR.CTL", "[DIRECTORY]\r\nFile: A \"One\"\r\n",
     [](const std::string&) { return ChangeCatalogueEntry(ItemKind::Coversheet, "A", "Two"); }},
    {"user", "B-DB\\USERLIST.INI", "[USER]\r\nName: (d)\r\n\r\n[USER]\r\nName: BEN\r\n",
     [](const std::string&) { return AddUserRecord("CLARA", {}, RecordKind::User); }},
    {"whole file", "B-DB\\LINK.INI", "(missing)",
     [](const std::string& path) { return WriteWholeFile(path, Lines(100, 'b')); }},
};

// How an action ended one of whose allocations failed.
enum class End { Done, Refused, Thrown };

End RunFailing(const Action& action, const std::string& path, int allocation) {
    allocationsLeft = allocation;
    End end = End::Thrown;
    try {
        end = action.Run(path) ? End::Done : End::Refused;
    } catch (const std::bad_alloc&) {
    }
    return end;
}

TEST(LackOfMemory, LeavesControlFilesWhole) {
    RecordingFront front;
    const UseFront use(front);
    for (const Action& action : kActions) {
        const TemporaryDirectory disk;
        disk.Write("BRIVANE.INI", "[SERVER]\r\nAllUserArea: U\r\nRequestArea: R\r\nServerArea: S\r\nSystemArea: " +
                                      disk.Path() + "\r\n");
        disk.Write("B-DB\\SETUP.INI", "");
        platform::TheEnvironment().SetVariable("BVAXINIT", disk.Path());
        ASSERT_EQ(LoadServerPaths(), kDone);
        std::string after;
        int failures = 0;
        for (int allocation = -1;; ++allocation) {
            if (disk.Has(action.File)) std::filesystem::remove(disk.HostPath(action.File));
            if (action.Before != "(missing)") disk.Write(action.File, action.Before);
            const End end = RunFailing(action, disk.Path(action.File), allocation);
            const bool hasFailed = allocationsLeft == -1 && allocation >= 0;
            allocationsLeft = -1;
            const std::string found = disk.Read(action.File);
            if (allocation < 0) {
                ASSERT_EQ(end, End::Done) << action.Name;
                after = found;
                continue;
            }
            if (!hasFailed) break;
            ++failures;
            EXPECT_TRUE(found == after || (end != End::Done && found == action.Before))
                << action.Name << ", allocation " << allocation << ": " << found.size() << " bytes";
        }
        EXPECT_GT(failures, 5) << action.Name;
        platform::TheEnvironment().SetVariable("BVAXINIT", "");
    }
}

} // namespace
} // namespace bv::test
