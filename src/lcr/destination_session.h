// Editing the destinations from the opening of their dialog to its end, with all that refers to them: the rules, the
// regions and the other names. Changes of the destinations go into working copies (destination_edit.h), those of the
// rules are kept until the end, where both are saved.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destination_edit.h"
#include "lcr/destination_entry.h"
#include "lcr/lcr_uses.h"
#include "lcr/rule_file.h"

namespace bv {

enum class PlaceKind { Country, Area, Region, Synonym };

// The word that messages have for the kind: "country", "area", "region", "other name".
std::string_view NameOf(PlaceKind kind);

// A destination or another name of one.
struct PlaceName {
    PlaceKind Kind = PlaceKind::Country;
    std::string Name;
    std::string Country = {}; // of an area, the dialling code

    friend bool operator==(const PlaceName&, const PlaceName&) = default;
};

// The references that a change makes others.
struct MovedReferences;

class DestinationSession {
  public:
    // Needs the edit lock, as all of it. False after a message of BeginDestinationEdit.
    bool Begin() { return BeginDestinationEdit(edit_); }

    [[nodiscard]] const Destinations& Places() const { return edit_.Tables; }
    [[nodiscard]] const std::vector<Synonym>& Synonyms() const { return edit_.Synonyms; }
    [[nodiscard]] bool IsChanged() const { return edit_.Changed; }

    // For an import.
    [[nodiscard]] DestinationEdit& Edit() { return edit_; }

    // Where rules, regions and other names refer to a place, or to an area of a country. None when the rules cannot be
    // read, after a message, which is shown again only if they are to be tried again.
    enum class RuleReading { Again, Once };
    [[nodiscard]] std::optional<std::vector<Use>> FindUses(const PlaceName& place,
                                                           RuleReading reading = RuleReading::Again);

    // Put an entry in the place of the old one, or in as a new one for an old one without a name. References to it are
    // asked about when it is renamed. The field that is to be changed first, after a message or a question; empty: it
    // is done.
    template <class Kind>
    std::string Save(const Kind& kind, const typename Kind::Entry& old, const typename Kind::Entry& entry,
                     const AskAboutUses& ask);
    std::string SaveSynonym(const Synonym& old, const Synonym& synonym);

    // Asks about the references, or else whether it is to go at all, and whether a country's areas may stay in their
    // file. False when it stays.
    bool Delete(const PlaceName& place, const AskAboutUses& ask);

    // Saves: the changed rules wait in their file of unsaved changes until the destinations are in place. Without a
    // change nothing is written. False after a message: then it may be called again.
    bool Commit();

    // Without a question. Changed rules stay in their file when some of the destinations are in place already.
    void Drop();

  private:
    [[nodiscard]] const RuleList* ReadRulesOnce(RuleReading reading = RuleReading::Again);
    [[nodiscard]] std::vector<Use> UsesOf(const MovedReferences& moved);
    bool Settle(const MovedReferences& moved, const AskAboutUses& ask, const std::function<bool()>& write);
    bool ChangeFiles(const MovedReferences& moved);
    bool DeleteEntry(const PlaceName& place);
    FileBefore CommitPlaces();

    DestinationEdit edit_;
    std::optional<RuleList> read_;     // the rules to be looked at
    std::optional<OpenedRules> rules_; // and to be changed
    bool areRulesFree_ = true;         // no changes of an earlier session wait for their save
    bool areRulesChanged_ = false;
    bool hasMissedRules_ = false; // they could not be read
    bool isHalfDone_ = false;     // some of the files are in place
};

// "Area UK/LON "London": 20...; used by rule 2 "Long faxes", region HOME".
std::string DescribePlace(DestinationSession& session, const PlaceName& place);

} // namespace bv
