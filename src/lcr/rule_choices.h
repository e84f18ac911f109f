// What a rule can name, as rows of lists to choose from: destinations, users and servers.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/number_place.h"
#include "lcr/rule.h"
#include "lcr/synonyms.h"
#include "shell/row_table.h"

namespace bv {

enum class PlaceKind { All, Region, Country, Area };

// The columns of destinations: kind, reference, name. Other names of a place stand behind its name.
enum PlaceColumn { kPlaceKind, kPlaceReference, kPlaceName, kPlaceColumns };

// A row's name is the line that a rule has of it: "Country: UK".
class PlaceRows final : public RowTable {
  public:
    void Fill(const Destinations& places, const std::vector<Synonym>& synonyms, PlaceKind kind);
    [[nodiscard]] std::string Name(std::size_t row) const override;

    // The cells of a line as a rule has it, and the name of the row that it stands for; "<Not found>" and none for what
    // is not there.
    struct Line {
        std::vector<std::string> Cells;
        std::string Is;
    };
    [[nodiscard]] static Line Describe(const Destinations& places, const std::string& line);
};

// The columns of users and servers: name, and full name or description.
enum NameColumn { kChoiceName, kChoiceTitle, kChoiceColumns };

class NameRows final : public RowTable {
  public:
    // Users in the order of their file; the servers of the links, "(local server)", and those of the rule that are
    // neither. False after a message, with what was read.
    bool FillUsers();
    bool FillServers(const RoutingRule& rule);

    // Ticks the rows of these names alone, or one row; the names of those that are ticked, in their order.
    void Tick(const std::vector<std::string>& names);
    void TickRow(std::size_t row, bool isTicked) { ticked_.at(row) = isTicked; }
    [[nodiscard]] bool IsTicked(std::size_t row) const override { return row < ticked_.size() && ticked_[row]; }
    [[nodiscard]] std::vector<std::string> Ticked() const;

    // The second column of a name, in any case; empty for one that is not there.
    [[nodiscard]] std::string TitleOf(std::string_view name) const;

  private:
    void Put(std::string_view name, std::string_view title);
    std::unordered_map<std::string, std::size_t> rows_; // by names in upper case
    std::vector<bool> ticked_;
};

// Where a number is: "UK/LDS (London, United Kingdom), region HOME".
std::string DescribeNumber(const Destinations& places, const NumberPlace& place);

} // namespace bv
