// Where a name is used, and deletion, from the list of users on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include "gui/disk_server.h"
#include "gui/gui.h"
#include "resources/ids.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/recording_front.h"
#include "users/user_list_dlg.h"
#include "whereused/where_used_dlg.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kRouting = "B-DB\\ROUTING.INI";

class WhereUsedDialogs : public testing::Test {
  protected:
    void SetUp() override {
        Startup() = {};
        ASSERT_EQ(LoadServerPaths(), kDone);
        Users = Server.Files().Read("B-DB\\USERLIST.INI");
        Routing = Server.Files().Read(kRouting);
    }

    // The list of users with those selected that the filter leaves.
    void WithUsers(const std::string& filter, const std::function<void(HWND, const Windows&)>& drive) {
        static constexpr DialogServices kServices{ShowUses, DeleteByDialog};
        RunDriven([] { ConfigureUsers(nullptr, kServices); },
                  [&](const Windows& windows) {
                      const HWND list = windows.Wait("Brivane - users and user groups");
                      SetTextOf(list, ID_USERS_FILTER, filter);
                      FocusControlOf(list, ID_USERS_LIST);
                      Key('A', VK_CONTROL);
                      Until([&] { return IsEnabled(list, ID_USERS_DELETE); });
                      drive(list, windows);
                  });
    }
    [[nodiscard]] bool IsAsBefore() const {
        return Server.Files().Read("B-DB\\USERLIST.INI") == Users && Server.Files().Read(kRouting) == Routing;
    }

    DiskServer Server;
    test::RecordingFront Front;
    std::string Users;
    std::string Routing;
};

TEST_F(WhereUsedDialogs, ShowsThePlacesAndWhatTheChoiceDoesToThem) {
    WithUsers("frank", [&](HWND list, const Windows& windows) {
        Click(list, ID_USERS_WHERE_USED);
        HWND uses = windows.Wait("Where FRANK is used");
        EXPECT_EQ(Text(uses, ID_USES_COUNT), "Places where user FRANK is used: 4");
        EXPECT_THAT(Entries(uses, ID_USES_LIST), testing::SizeIs(4));
        EXPECT_EQ(GetDlgItem(uses, ID_USES_LEAVE), nullptr);
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return !IsWindow(uses); }));

        FocusControlOf(list, ID_USERS_LIST);
        Key(VK_DELETE);
        uses = windows.Wait("Where FRANK is used", ID_USES_LEAVE);
        constexpr const char* kRule = "\tLCRRULES.INI\trule 4 \"Overseas, evenings and weekends\"\t";
        constexpr const char* kForward = "\tROUTING.INI\tforwarding from HUGO to FRANK\t";
        const struct {
            int Choice;
            const char* By; // what is typed then
            const char* Rule;
            const char* Forward;
        } choices[] = {
            {ID_USES_TAKE_OUT, nullptr, "loses FRANK", "the entry goes"},
            {ID_USES_LEAVE, nullptr, "stays as it is", "stays as it is"},
            {ID_USES_REPLACE, "ben", "becomes ben", "becomes ben"},
            {ID_USES_REPLACE, "HUGO", "becomes HUGO", "the entry goes"}, // and does not forward to HUGO
        };
        for (const auto& [choice, by, rule, forward] : choices) {
            Send(GetDlgItem(uses, choice), BM_CLICK);
            if (by != nullptr) {
                FocusControlOf(uses, ID_USES_BY);
                SetTextOf(uses, ID_USES_BY, "");
                Type(by);
            }
            EXPECT_TRUE(Until([&] { return Entries(uses, ID_USES_LIST)[0] == std::string(kRule) + rule; })) << rule;
            EXPECT_THAT(Entries(uses, ID_USES_LIST), Contains(std::string(kForward) + forward));
            EXPECT_EQ(IsEnabled(uses, ID_USES_EMPTIED), choice == ID_USES_TAKE_OUT);
        }
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return !IsWindow(uses); }));
    });
    EXPECT_TRUE(IsAsBefore());
    EXPECT_THAT(Front.Said, Each(testing::AnyOf(StartsWith("wait cursor"), StartsWith("status 1: "))));
}

TEST_F(WhereUsedDialogs, DeletesAfterTheChoiceWithoutAnotherQuestion) {
    WithUsers("frank", [&](HWND list, const Windows& windows) {
        Click(list, ID_USERS_DELETE);
        const HWND uses = windows.Wait("Where FRANK is used", ID_USES_LEAVE);
        Send(GetDlgItem(uses, ID_USES_REPLACE), BM_CLICK);
        for (const char* wrong : {"frank", "nobody"}) {
            SetTextOf(uses, ID_USES_BY, wrong);
            Front.Said.clear();
            Click(uses, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty(); }));
            EXPECT_TRUE(IsWindow(uses));
        }
        EXPECT_TRUE(IsAsBefore());
        SetTextOf(uses, ID_USES_BY, "ben");
        Click(uses, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(uses); }));
        EXPECT_TRUE(Until([&] { return Entries(list, ID_USERS_LIST).empty(); }));
    });
    EXPECT_THAT(Server.Files().Read(kRouting), HasSubstr("HUGO: \"\" LAN-ANY \"BEN\" DELETE\r\n"));
    EXPECT_THAT(Server.Files().Read("B-DB\\USERLIST.INI"), Not(HasSubstr("Name: FRANK")));
    EXPECT_FALSE(Server.Files().Has("USERS\\FRANK"));
    EXPECT_THAT(Front.Said, Contains("status 1: Brivane user FRANK deleted"));
    EXPECT_THAT(Front.Said, Not(Contains(StartsWith("ask"))));
}

} // namespace
} // namespace bv::gui
