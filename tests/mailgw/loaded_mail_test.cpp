// Mail libraries that the system loads: the tests' own, and that of this workstation.
#include <gmock/gmock.h>

#include "mailgw/fake_mail.h"
#include "mailgw/mail_access.h"
#include "platform/environment.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using test::MailPartner;
using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

Texts* calls = nullptr;

mapi::Error NoteCall(const char* entry, const char* details) {
    calls->push_back(entry + std::string(" ") + details);
    return 0;
}

class LoadedMail : public testing::Test {
  protected:
    LoadedMail() { calls = &calls_; }
    ~LoadedMail() override {
        MailTerm();
        ConfiguredMailType() = static_cast<int>(MailType::Mapi);
    }

    static std::string Path(const std::string& name) {
        return platform::Service<platform::Environment>::System().ProgramDirectory() + "\\" + name;
    }
    StatusCode Init(MailType type) {
        ConfiguredMailType() = static_cast<int>(type);
        return MailInit(5, "gate", "", true);
    }
    // The library is told of its partner, and stays loaded, so that it keeps that.
    void Meet(const std::string& name) {
        met_ = platform::TheLibraries().Load(name);
        ASSERT_TRUE(met_) << name;
        const auto use = reinterpret_cast<void (*)(MailPartner*)>(met_->Entry("UseMailPartner"));
        ASSERT_TRUE(use != nullptr);
        use(&partner_);
    }
    // What sending, reading, choosing and tidying give through the library.
    void ExpectEverythingPasses() {
        MailMessage message;
        message.Subject = "S";
        message.NoteText = "Text";
        message.Recipients = {{RecipientClass::Copy, "B", "X:b", "ab"}};
        message.Files = {{"C:\\A", "", {}}, {"C:\\B", "B.TIF", 9}};
        EXPECT_EQ(MailSend(message), kDone);
        std::string id = "m1";
        EXPECT_EQ(MailReadNext(id, message), kDone);
        EXPECT_EQ(id + message.Subject + message.NoteText + message.Originator->Name, "m2OLDHelloAnn A");
        ASSERT_EQ(message.Recipients.size(), 1U);
        EXPECT_EQ(message.Recipients[0].EntryId, std::string("id\0x", 4));
        ASSERT_EQ(message.Files.size(), 1U);
        EXPECT_EQ(message.Files[0].PathName, "C:\\T\\A.TIF");
        EXPECT_EQ(message.Files[0].Position, 3U);
        EXPECT_EQ(MailReadNext(id, message), kDone);
        EXPECT_EQ(id, "");
        EXPECT_EQ(MailDelete("m0"), kDone);
        EXPECT_EQ(MailTidyFolder(1, "new"), kDone);
    }

    MemoryServer server_;
    Texts calls_;
    MailPartner partner_{NoteCall};
    std::unique_ptr<platform::Library> met_;
};

TEST_F(LoadedMail, IsTheOneThatWinIniNames) {
    Meet(Path("BVLNAPI.DLL"));
    server_.Put("C:\\WINDOWS\\WIN.INI", "[Mail]\r\nMAPIDLLName32=" + Path("BVLNAPI.DLL") + "\r\n");
    ASSERT_EQ(Init(MailType::Mapi), kDone);
    EXPECT_THAT(calls_, ElementsAre("Initialize ", "Logon 5 gate (none) 3", "OpenExtended 7777777777"));
    calls_.clear();
    ExpectEverythingPasses();
    EXPECT_EQ(calls_.front(), "SendMail 7777777777 S|Text|(none) to 2 B X:b 2 file C:\\A (none) FFFFFFFF "
                              "file C:\\B B.TIF 9");
    EXPECT_THAT(calls_, testing::IsSupersetOf({"ReadMail m2 80", "DeleteMail 7777777777 m0"}));
    MailRecipient recipient;
    EXPECT_EQ(MailResolveName("Ann", true, recipient), kDone);
    EXPECT_EQ(recipient.Address, "SMTP:ann");
    std::vector<MailRecipient> chosen(3);
    EXPECT_EQ(MailPickAddresses("Users", chosen), kDone);
    EXPECT_EQ(chosen.size(), 1U);
    EXPECT_EQ(*(calls_.end() - 2) + "|" + calls_.back(), "ResolveName Ann 8|Address Users 3");
    calls_.clear();
    EXPECT_EQ(MailTerm(), kDone);
    EXPECT_THAT(calls_, ElementsAre("Release ", "Logoff 7777777777", "Uninitialize "));
    EXPECT_EQ(partner_.Buffers, 0);
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
}

TEST_F(LoadedMail, IsFoundBesideTheProgram) {
    if (!platform::TheLibraries().Load("BVLNAPI.DLL"))
        GTEST_SKIP() << "this system finds no libraries beside the program";
    Meet("BVLNAPI.DLL");
    MapiTable mapi;
    EXPECT_EQ(ResolveMapi(*met_, mapi), kDone);
    EXPECT_TRUE(mapi.QueryAllRows != nullptr) << "exported with its decoration";
    server_.Put("F:\\BRIVANE\\nNOTES.DLL", "");
    ASSERT_EQ(Init(MailType::Notes), kDone);
    ExpectEverythingPasses();
    EXPECT_EQ(MailTerm(), kDone);
    EXPECT_THAT(calls_, ElementsAre("PreInit ", "Init gate ", "Send S", "Read m1", "Read m2", "Delete m0", "Reopen ",
                                    "Clear Waste new", "Term ", "PostTerm "));
}

} // namespace
} // namespace bv
