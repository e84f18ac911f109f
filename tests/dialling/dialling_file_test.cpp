#include "dialling/dialling_file.h"

#include <gmock/gmock.h>

#include <set>

#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv {
namespace {

using test::Replaced;
using testing::ElementsAre;

const std::string kPath = "F:\\BRIVANE\\B-DB\\DIALLING.INI";
const std::string kNewPath = "F:\\BRIVANE\\B-DB\\DIALLING.NEW";
const std::string kHead = "[BRIVANE]\nType: DiallingProperties\nRevision: A\n\n[DIALPROPERTIES]\n";
const std::string kLondon = "[LOCATION]\nDescription: London\nCountry: 44\nArea: 171\nNatlAccess: 0\nIntlAccess: 00\n"
                            "DialAreaCode: YES\nDialNatlAccessForLocal: NO\nDisplayNatlAccess: YES\n"
                            "NumberWithoutAreaMaxLen: 7\nDialAsLocal: 181\nDialAsLocal: 1923\nDialAsNatl: 9\n\n";
const std::string kOslo =
    "[LOCATION]\n Description: x\ncountry= 47\nDialAsNatl: 1\nDescription: Oslo\nColour:\tred \n; hers\n\n";
const std::string kOsloCopied = "[LOCATION]\nDescription: Oslo\nColour:\tred \n; hers\n\n";
const std::string kNameless = "[LOCATION] x\nCountry: 1\n\n";
const std::string kRome = "[Location]\nDescription: Rome\n\n";
const std::string kOther = "[OTHER]\nDescription: London\n\n";

struct DialServer : test::MemoryServer {
    DialServer() { Load(); }
    explicit DialServer(const std::string& text) : DialServer() { Put(kPath, Replaced(text, "\n", "\r\n")); }
    std::string File() { return Replaced(Get(kPath), "\r\n", "\n"); }
};

// The record as one text.
std::string Shown(const DialProperties& properties) {
    std::string text = std::to_string(properties.Mode) + "|" + properties.Description.String();
    for (const DialKey& key : DialKeys()) text += "|" + key.Text(properties);
    for (const DialListKey& key : kDialListKeys) {
        text += "|";
        for (const DialPrefix& prefix : properties.*key.List) text += prefix.String() + ",";
    }
    return text;
}

std::string Read(const std::string& text) {
    DialServer server(text);
    DialProperties properties;
    properties.Area = "left over";
    const StatusCode status = ReadDialLocation(kPath, std::nullopt, properties);
    return std::to_string(status) + " " + Shown(properties);
}

const std::string kEmpty = "|||||NO|NO|NO|0||";

std::string Prefixes(int count, const std::string& key) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += key + std::to_string(i) + "\n";
    return lines;
}

TEST(DiallingFile, IsReadByTheLocationThatItSelects) {
    const std::string select = kHead + "Location: London\n";
    const std::string london = "0 2|London|44|171|0|00|YES|NO|YES|7|181,1923,|9,";
    const std::string many = "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,";
    const std::pair<std::string, std::string> cases[] = {
        {"", "-4059 0|" + kEmpty},
        {kHead, "-4059 0|" + kEmpty},
        {"[LOCATION]\nLocation: London\n" + kLondon, "-4059 0|" + kEmpty},
        {kLondon + kHead + "Location: London\n", "-4059 0|" + kEmpty},
        {kHead + "Location: london\n" + kLondon, "-4059 0|" + kEmpty},
        {kHead + "Location: tapi\n" + kLondon, "0 3|" + kEmpty},
        {kHead + "Location: NOTELNUMEDIT\n", "-3980 1|" + kEmpty},
        {select + "\n" + kLondon, london},
        {select + kOther + kOslo + kRome + kLondon + kLondon + kOslo, london},
        {Replaced(select, "[DIAL", "x\n\n[dial") + kLondon, london},
        {select + "[LOCATION]\nDescription: London\nNumberWithoutAreaMaxLen: 65543x\nDialAreaCode:\nDisplayNatlAccess: "
                  "maybe\nNatlAccess: 12345678901\nDescription: Oslo\n",
         "0 2|London|||1234567890||YES|NO|NO|7||"},
        {select + "[LOCATION]\ndialasnatl: 1\nDialAsNatl: 2\ndialasnatl: 3\nDescription: London\n",
         "0 2|London|||||NO|NO|NO|0||1,2,"},
        {select + "[LOCATION]\nDescription: London\nDialAsLocal: 1\n; x\nDialAsLocal: 2\nDialAsNatl: 3\n",
         "0 2|London|||||NO|NO|NO|0|1,|3,"},
        {select +
             "[LOCATION]\nDescription: London\nDialAsLocal: 12345678901\nDialAsLocal:\nDialAsLocal=2\nDialAsLocal:3\n",
         "0 2|London|||||NO|NO|NO|0|1234567890,,|"},
        {select + "[LOCATION]\nDescription: London\n" + Prefixes(35, "DialAsLocal: ") + Prefixes(31, "DialAsNatl: "),
         "0 2|London|||||NO|NO|NO|0|" + many + "|" + many},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(Read(text), expected) << text;
    DialServer server(select + kNameless + kLondon);
    EXPECT_EQ(ReadDiallingProperties(kPath), 0);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("status 1: Invalid 'Description:' line found in '" + kPath +
                                                     "' file - skipping paragraph"));
    EXPECT_EQ("0 " + Shown(GetDialProperties()), london);
}

DialProperties Selected(const std::string& name) {
    DialProperties properties;
    SelectLocation(properties, name);
    return properties;
}

const std::string kNewLondon = "[LOCATION]\nDescription: London\nCountry: \nArea: \nNatlAccess: \nIntlAccess: \n"
                               "DialAreaCode: NO\nDialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\n"
                               "NumberWithoutAreaMaxLen: 0\n\n";

TEST(DiallingFile, IsWrittenAroundOneLocation) {
    const std::string select = kHead + "Location: London\n\n";
    const std::string rome = Replaced(kRome, "Location", "LOCATION");
    struct Case {
        std::string Location;
        std::string Before;
        std::string After;
    };
    const Case cases[] = {
        {"London", "(none)", select + kNewLondon},
        {"TAPI", "(none)", kHead + "Location: TAPI\n\n"},
        {"TAPI", kHead + "Location: London\n; x\n\n" + kLondon + kOther, kHead + "Location: TAPI\n\n"},
        {"NoTelNumEdit", select + kLondon, kHead + "Location: NoTelNumEdit\n\n"},
        {"London", kHead + "; x\n" + kRome + kOther + kLondon + kOther + kOslo + kOther,
         select + rome + kNewLondon + kOslo + kOther},
        {"London", kHead + kOslo + kNameless + kRome, select + kOsloCopied + kNameless + rome + kNewLondon},
        {"London", kHead + kLondon + kOther, select + kNewLondon},
        {"London", kHead + kLondon + kLondon, select + kNewLondon + kLondon},
        {"London", "", "[DIALPROPERTIES]\nLocation: London\n\n" + kNewLondon},
        {"London", "x", "x\n\n[DIALPROPERTIES]\nLocation: London\n\n" + kNewLondon},
        {"London", kRome, kRome + "[DIALPROPERTIES]\nLocation: London\n\n" + kNewLondon},
        {"London", "a \t\n[DIALPROPERTIES] x\n[DIALPROPERTIES] \n" + kRome,
         "a \t\n[DIALPROPERTIES] x\n[DIALPROPERTIES] \nLocation: London\n\n" + rome + kNewLondon},
        {"London", "[dialproperties]\n" + kRome, "[dialproperties]\nLocation: London\n\n" + rome + kNewLondon},
        {"London", kHead + "[LOCATION]\nDescription: " + std::string(260, 'd') + "\n" + std::string(400, 'x'),
         select + "[LOCATION]\nDescription: " + std::string(260, 'd') + "\n" + std::string(400, 'x') + "\n" +
             kNewLondon},
        {"Rome", select + kLondon + "[LOCATION]\nDescription: rome\n",
         Replaced(select, "London", "Rome") + kLondon + "[LOCATION]\nDescription: rome\n" +
             Replaced(kNewLondon, "London", "Rome")},
    };
    for (const Case& one : cases) {
        DialServer server;
        if (one.Before != "(none)") server.Put(kPath, Replaced(one.Before, "\n", "\r\n"));
        EXPECT_TRUE(WriteDiallingProperties(Selected(one.Location)));
        EXPECT_EQ(server.File(), one.After) << one.Before;
        EXPECT_EQ(server.Get(kNewPath), "(none)");
        EXPECT_THAT(server.Front.TakeSaid(),
                    ElementsAre("status 1: Updating file " + kPath, "status 1: Updated file " + kPath));
    }
}

TEST(DiallingFile, WhatIsWrittenIsReadBack) {
    DialServer server(kHead + "Location: London\n" + kOslo + kLondon + kRome);
    DialProperties properties;
    EXPECT_EQ(ReadDialLocation(kPath, std::nullopt, properties), 0);
    EXPECT_TRUE(WriteDiallingProperties(properties));
    EXPECT_EQ(server.File(), kHead + "Location: London\n\n" + kOsloCopied + kLondon + kRome);
    const std::string before = Shown(properties);
    EXPECT_EQ(ReadDialLocation(kPath, std::nullopt, properties), 0);
    EXPECT_EQ(Shown(properties), before);
    EXPECT_EQ(ReadDialLocation(kPath, "Rome", properties), 0);
    EXPECT_EQ(Shown(properties), "2|Rome" + kEmpty);
    EXPECT_EQ(ReadDialLocation(kPath, "rome", properties), -4059);
}

TEST(DiallingFile, ATapiLocationHasNoKeys) {
    DialServer server;
    DialProperties properties = Selected("London");
    properties.Description = "TAPI";
    EXPECT_TRUE(WriteDiallingProperties(properties));
    EXPECT_EQ(server.File(), kHead + "Location: TAPI\n\n[LOCATION]\nDescription: TAPI\n\n");
}

TEST(DiallingFile, ThatIsHeldIsNotWritten) {
    const std::string text = kHead + "Location: Rome\n" + kLondon + kRome;
    DialServer server(text);
    const ControlStream other = OpenShared(kPath, "r+b");
    EXPECT_FALSE(WriteDiallingProperties(Selected("London")));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open file " + kPath));
}

} // namespace
} // namespace bv
