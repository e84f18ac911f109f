// The places that a telephone number is in.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialling/number_converter.h"
#include "lcr/destinations.h"

namespace bv {

struct NumberArea {
    std::string Reference; // "UK/LON"
    std::string Match;     // the first of its numbers that is meant, "171*"

    friend bool operator==(const NumberArea&, const NumberArea&) = default;
};

struct NumberPlace {
    std::string Number;               // "+" and digits
    std::string Country;              // its identifier
    std::vector<NumberArea> Areas;    // in the order of their file
    std::vector<std::string> Regions; // that contain the country or one of the areas
    friend bool operator==(const NumberPlace&, const NumberPlace&) = default;

    // Those of the areas; the country where the number is in none.
    [[nodiscard]] std::vector<std::string> References() const;
};

// The place of a number in international form, with its "+" or without; formatting characters and a suffix behind a
// colon do not matter. The country is the one with the longest dialling code. None for what is no such number, and for
// one of no country. Shows nothing.
std::optional<NumberPlace> PlaceOfNumber(const Destinations& places, std::string_view international);

// Where a number as it is dialled is: without a "+" it is converted by the dialling properties first, or taken as it
// stands after warning 9381 when there are none. None, after 9382, 9371 or a message of NumberConverter,
// when it is nowhere.
std::optional<NumberPlace> EnterNumber(const Destinations& places, const std::string& number);

// The places of numbers while they are typed. The dialling properties are read for the first number without a "+".
class NumberSearch {
  public:
    // "+442079460018: UK/LON (20...), London, United Kingdom; region HOME", or why it is nowhere; empty for no number.
    // Shows nothing but what NumberConverter says of properties that cannot be read.
    [[nodiscard]] std::string TextOf(const Destinations& places, const std::string& number);

  private:
    enum class Converting { NotAsked, Possible, Impossible };
    bool CanConvert();

    NumberConverter converter_;
    Converting converting_ = Converting::NotAsked;
};

// A number of an area as lists show it: "20..." for "20*".
std::string MatchText(std::string_view match);

// Whether a text can only be meant as a number: it holds digits and nothing else but formatting characters.
bool LooksLikeNumber(std::string_view text);

} // namespace bv
