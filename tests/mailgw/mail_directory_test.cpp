// The users of the mail system: making their list through MAILCONF.EXE, and looking into it.
#include "mailgw/mail_directory.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "platform/processes.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const std::string kDirectory = "F:\\BRIVANE\\B-DB\\MAILUSER.DAT";
const std::string kMade = "F:\\BRIVANE\\B-DB\\MAILUSER.TMP";

// Stands in for MAILCONF.EXE.
class MailConf final : public platform::Processes {
  public:
    explicit MailConf(MemoryServer& server) : server_(server) {}

    std::string Makes; // nothing when empty
    bool CanStart = true;
    std::vector<std::string> Calls;

    platform::StartResult Start(const std::string& commandLine) override {
        Calls.push_back(commandLine);
        if (!CanStart) return {nullptr, 2};
        return {std::make_unique<Running>(*this), 0};
    }
    platform::StartResult StartRestored(const std::string& commandLine) override { return Start(commandLine); }

  private:
    // Makes its file only when it has been waited for.
    class Running final : public platform::Process {
      public:
        explicit Running(MailConf& program) : program_(program) {}
        ~Running() override {
            MemoryServer& server = program_.server_;
            const Texts said = server.Front.TakeSaid();
            const bool isAwaited = std::ranges::find(said, "wait for program") != said.end();
            if (isAwaited && !program_.Makes.empty()) server.Put(kMade, program_.Makes);
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        bool IsRunning() override { return false; }

      private:
        MailConf& program_;
    };

    MemoryServer& server_;
};

TEST(MailDirectory, IsMadeWhenMissingOrForced) {
    MemoryServer server;
    server.Load();
    MailConf program(server);
    const platform::Substitute<platform::Processes> use(program);

    EXPECT_TRUE(EnsureMailUserList(0, false));
    EXPECT_EQ(server.Get(kDirectory), "(none)") << "nothing was made";
    program.Makes = "one";
    EXPECT_TRUE(EnsureMailUserList(0x1A2B, false));
    EXPECT_EQ(server.Get(kDirectory), "one");
    EXPECT_EQ(server.Get(kMade), "(none)");
    EXPECT_THAT(program.Calls,
                ElementsAre("F:\\BRIVANE\\MAILCONF.EXE -SE -H0", "F:\\BRIVANE\\MAILCONF.EXE -SE -H1A2B"));
    program.Makes = "two";
    EXPECT_TRUE(EnsureMailUserList(0, false));
    EXPECT_EQ(server.Get(kDirectory), "one");
    EXPECT_EQ(program.Calls.size(), 2U);
    EXPECT_TRUE(EnsureMailUserList(0, true));
    EXPECT_EQ(server.Get(kDirectory), "two");

    program.Makes.clear();
    EXPECT_TRUE(EnsureMailUserList(0, true));
    EXPECT_EQ(server.Get(kDirectory), "two") << "nothing was made, so the old one stays";
    EXPECT_FALSE(RemakeMailUserList(0));
    EXPECT_THAT(server.Front.TakeSaid(), testing::Contains("error: MAILCONF.EXE has made no list of mail users."));
    program.Makes = "Smith John\tjo@x\r\nArcher A"; // killed in the middle
    EXPECT_TRUE(RemakeMailUserList(0));
    std::vector<MailPerson> people;
    EXPECT_TRUE(ReadMailDirectory(people));
    ASSERT_EQ(people.size(), 1U);
    EXPECT_EQ(people[0].Name + "|" + people[0].Address, "Smith John|jo@x");
    EXPECT_TRUE(DeleteMailUserList());
    EXPECT_EQ(server.Get(kDirectory), "(none)");
    EXPECT_TRUE(DeleteMailUserList());
}

TEST(MailDirectory, SaysWhyItIsNotMade) {
    MemoryServer server;
    server.Load();
    MailConf program(server);
    const platform::Substitute<platform::Processes> use(program);
    program.CanStart = false;
    server.Put(kMade, "left over");
    EXPECT_FALSE(EnsureMailUserList(0, false));
    EXPECT_THAT(server.Front.TakeSaid(),
                testing::Contains("error: Windows error 2 running program 'F:\\BRIVANE\\MAILCONF.EXE -SE -H0'"));
    EXPECT_EQ(server.Get(kDirectory), "(none)");

    program.CanStart = true;
    server.Put(kDirectory, "old");
    const platform::OpenResult reader = server.Files.Open(kDirectory, {});
    EXPECT_FALSE(EnsureMailUserList(0, true));
    EXPECT_THAT(server.Front.TakeSaid(), testing::Contains("error: Unable to update file " + kDirectory));
    EXPECT_EQ(server.Get(kMade), "left over");
}

TEST(MailDirectory, FindsNamesEitherWayRound) {
    MemoryServer server;
    server.Load();
    const std::string file = "John\r\nSmith John  Paul\tsjp@x \r\n\r\nJO\tjo@x\tmore\nBrown Charlie M\tcmb\r\n"
                             "Lucy\t\r\nLast One\tend";
    server.Put(kDirectory, file);
    const struct {
        std::string_view Name;
        std::size_t Size;
        std::optional<std::string> Address;
    } rows[] = {
        {"SMITH john", 99, "sjp@x "},
        {"John Smith", 99, "sjp@x "},
        {"john smith", 3, "sjp"},
        {"John", 99, std::nullopt}, // the line that begins so has no tab
        {"jo", 99, "jo@x\tmore"},
        {"Charlie M Brown", 99, {}},
        {"M Brown Charlie", 99, "cmb"},
        {"Charlie Brown", 99, "cmb"},
        {"Lucy", 99, ""},
        {"last one", 99, "end"},
        {"One Last", 99, "end"},
        {"", 99, {}},
        {"Nobody", 99, {}},
    };
    std::string found;
    for (const auto& [name, size, address] : rows) {
        found.clear();
        EXPECT_EQ(LookupMailUser(name, size, found), address ? kDone : kKeyMissing) << name;
        EXPECT_EQ(found, address.value_or("")) << name;
    }
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());

    server.Files.Delete(kDirectory);
    EXPECT_EQ(LookupMailUser("jo", 99, found), kKeyMissing);
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());

    server.Put(kDirectory, file);
    const platform::OpenResult writer =
        server.Files.Open(kDirectory, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    EXPECT_EQ(LookupMailUser("jo", 99, found), kFileFailed);
    EXPECT_THAT(server.Front.TakeSaid(), testing::ElementsAre("error: Unable to open file " + kDirectory));
}

} // namespace
} // namespace bv
