#include "shell/row_order.h"

#include <gmock/gmock.h>

#include "shell/row_table.h"

namespace bv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RowOrders : public testing::Test {
  protected:
    RowOrders() {
        Rows.Begin(3);
        for (const char* cell :
             {"EVA", "Eva, wages", "9", "ANNA", "Anna, accounts", "10", "BEN", "anna's brother", "9"})
            Rows.Add(cell);
        Order.Reset();
    }

    [[nodiscard]] std::vector<std::string_view> Shown() const {
        std::vector<std::string_view> names;
        for (std::size_t place = 0; place < Order.Shown(); ++place) names.push_back(Rows.Text(Order.RowAt(place), 0));
        return names;
    }

    RowTable Rows;
    RowOrder Order{Rows};
};

TEST_F(RowOrders, SortEachWayAndKeepTheFilesOrderAmongEquals) {
    EXPECT_THAT(Shown(), ElementsAre("EVA", "ANNA", "BEN"));
    Order.Sort(RowOrder::SortBy{0, true});
    EXPECT_THAT(Shown(), ElementsAre("ANNA", "BEN", "EVA"));
    Order.Sort(RowOrder::SortBy{0, false});
    EXPECT_THAT(Shown(), ElementsAre("EVA", "BEN", "ANNA"));
    Order.Sort(RowOrder::SortBy{1, true});
    EXPECT_THAT(Shown(), ElementsAre("BEN", "ANNA", "EVA")) << "without regard to case";
    Order.Sort(RowOrder::SortBy{2, true});
    EXPECT_THAT(Shown(), ElementsAre("EVA", "BEN", "ANNA")) << "numbers by their value";
    Order.Sort(std::nullopt);
    EXPECT_THAT(Shown(), ElementsAre("EVA", "ANNA", "BEN"));
}

TEST_F(RowOrders, ShowRowsWithEachWordAnywhere) {
    Order.Sort(RowOrder::SortBy{0, true});
    Order.Filter("ann");
    EXPECT_THAT(Shown(), ElementsAre("ANNA", "BEN"));
    EXPECT_EQ(Order.PlaceOf(2), 1u);
    EXPECT_EQ(Order.PlaceOf(0), std::nullopt);
    Order.Filter("ann BRO");
    EXPECT_THAT(Shown(), ElementsAre("BEN"));
    Order.Filter("ann bro x");
    EXPECT_THAT(Shown(), IsEmpty());
    EXPECT_EQ(Order.Find("A", 0), std::nullopt);
    Order.Filter("9");
    EXPECT_THAT(Shown(), ElementsAre("BEN", "EVA")) << "a text that did not grow is looked for in all rows again";
    Order.Filter("");
    EXPECT_EQ(Order.Shown(), 3u);
}

TEST_F(RowOrders, FindWhatIsTypedRoundTheEnd) {
    Order.Sort(RowOrder::SortBy{1, true});
    EXPECT_EQ(Order.Find("ANNA", 0), 0u);
    EXPECT_EQ(Order.Find("anna", 1), 1u);
    EXPECT_EQ(Order.Find("anna", 2), 0u);
    EXPECT_EQ(Order.Find("x", 0), std::nullopt);
}

TEST_F(RowOrders, FollowRowsThatHaveChanged) {
    Order.Sort(RowOrder::SortBy{0, true});
    Order.Filter("a");
    for (const char* cell : {"ADA", "Ada", "1", "ZOE", "Zoe", "1"}) Rows.Add(cell);
    Order.Reset();
    EXPECT_THAT(Shown(), ElementsAre("ADA", "ANNA", "BEN", "EVA"));
}

} // namespace
} // namespace bv
