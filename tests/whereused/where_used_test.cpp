#include "whereused/where_used.h"

#include <gmock/gmock.h>

#include "support/memory_server.h"

namespace bv {
namespace {

using testing::ElementsAre;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";

TEST(WhereUsed, NamesEveryPlaceAndAsks) {
    test::MemoryServer server;
    server.Load();
    EXPECT_THAT(FindUses(RecordKind::User, {"ann"}), testing::Optional(testing::IsEmpty()));
    EXPECT_TRUE(AgreeToDeletion(RecordKind::User, {"ann"}));

    server.Put(kArea + "LCRRules.ini", "[RULE]\nDescription: One\nUser: Ann\n\n[RULE]\nUser: ANN\nUser: BEN\n");
    server.Put(kArea + "LINK.INI", "[LINK]\nRemoteServerID: LON\nLinkType: WAN\nRemoteServerAddress: x\n"
                                   "BrivaneAccountName: ANN\n");
    server.Put(kArea + "ROUTING.INI", "[BRIVANE]\nType: RoutingInit\nRevision: A\n[SENDERID]\n@44: \"+44\"\nANN: BEN\n"
                                      "[FORWARD]\nBEN: LAN-ANY \"ANN\"\nANNE: LAN-ANY \"BEN\"\n");
    server.Put(kArea + "MAILLIST.INI", "[USER]\nBrivname: ANN\nEmailname: Ann A\n");
    server.Put(kArea + "SETUP.INI", "[MODEM-1]\nRecdUser: ann\nUserName: ANN\n[HPSCAN]\nUser: ANNE\n");
    server.Front.TakeSaid();
    EXPECT_FALSE(AgreeToDeletion(RecordKind::User, {"ANN"}));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("ask warning: ANN is used in:\nLCRRULES.INI: rule 1 \"One\", which then takes more faxes\n"
                            "LCRRULES.INI: rule 2 \"\"\nLINK.INI: link LON\nROUTING.INI: sender +44 for ANN\n"
                            "ROUTING.INI: forwarding from BEN to ANN\nMAILLIST.INI: mail user Ann A\n"
                            "SETUP.INI: [MODEM-1] RecdUser: ann\n\nGo on?"));

    server.Files.Delete(kArea + "LINK.INI");
    server.Files.MakeDirectory(kArea + "LINK.INI");
    server.Front.Answer = true;
    EXPECT_FALSE(AgreeToDeletion(RecordKind::User, {"ANN"}));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File error: couldn't open " + kArea + "Link.ini"));
}

} // namespace
} // namespace bv
