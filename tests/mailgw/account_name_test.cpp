#include "mailgw/account_name.h"

#include <random>

#include <gmock/gmock.h>

#include "support/memory_server.h"

namespace bv {
namespace {

using test::MemoryServer;

std::string Made(std::string_view displayName, std::string_view expression) {
    AccountName name = "before";
    const bool isMade = MakeMailAccountName(displayName, expression, name);
    EXPECT_EQ(isMade, !name.IsEmpty());
    return name.String();
}

TEST(AccountName, FollowsTheExpression) {
    const std::string x40(40, 'x');
    const std::string x27(27, 'x');
    const struct {
        std::string DisplayName;
        const char* Expression;
        std::string Name;
    } rows[] = {
        {"Smith John", "%1First%Last", "JSmith"},
        {"Smith John", "%First%1Last", "JohnS"},
        {"Smith John Paul", "%Second", "Paul"},
        {"Smith John Paul", "%9Second%2first-%LAST", "PaulJoSmith"},
        {"  Smith   John  ", "%1First%Last", "JSmith"},
        {"Smith John\tPaul", "%Second%First", "John"},
        {"Smith John Paul George", "%Last%First%Second", "SmithJohnPaul"},
        // what is no item does not count
        {"Smith John", "First %%Firstly%0Last%12Last%La%", "John"},
        {"Smith John", "", ""},
        {"Smith John", "Last", ""},
        // one word
        {"Smith", "%1First%Last", "Smith"},
        {"Smith", "%2Last%First%Last", "Smith"},
        {"Smith", "%2Last%1First", "Sm"},
        {"Smith", "%2First", "Sm"}, // the second pass
        {"Smith\tJohn", "%Second", "Smith"},
        {"", "%Last", ""},
        {" \t", "%Last", ""},
        {"\tSmith", "%Last", ""},
        // two passes
        {"Smith John", "%Second", ""},
        {"Smith", "%3Second", ""},
        // limits
        {x40, "%Last", x27},
        {x40 + " y", "%First%Last", "y" + std::string(26, 'x')},
        {"y " + x40 + " z", "%First%Last%Second", x27},
        {"abc de", "%Last%Last%Last%Last%Last%Last%Last", "abcabcabcabcabc"}, // it ends at 27 characters, too
    };
    for (const auto& [displayName, expression, name] : rows)
        EXPECT_EQ(Made(displayName, expression), name) << displayName << ", " << expression;
}

TEST(AccountName, TakesTheExpressionOfTheServer) {
    const std::pair<const char*, const char*> rows[] = {
        {"[OPTIONS]\r\n", "JSmith"},
        {"[OPTIONS]\r\nMailUserAlias:\r\n", "JSmith"},
        {"[OPTIONS]\r\nMailUserAlias: %First%1Last\r\n", "JohnS"},
        {"[OTHER]\r\nMailUserAlias: %First%1Last\r\n", "JSmith"},
        {"[OPTIONS]\r\nmailuseralias: nothing\r\n", ""},
    };
    for (const auto& [setup, name] : rows) {
        MemoryServer server;
        server.Load();
        server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", setup);
        AccountName made;
        EXPECT_EQ(MakeMailAccountName("Smith John", made), *name != '\0');
        EXPECT_EQ(made, name);
    }
    EXPECT_TRUE(IsAccountExpression("%First%1Last"));
    EXPECT_FALSE(IsAccountExpression("First"));
    EXPECT_TRUE(IsAccountExpression("%First%1Last12345678901234x"));
    EXPECT_FALSE(IsAccountExpression("%First%1Last12345678901234xy"));
}

} // namespace
} // namespace bv
