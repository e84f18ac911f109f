#include "dialling/numbers.h"

#include <algorithm>
#include <array>
#include <span>

#include "dialling/dialling_file.h"

namespace bv {
namespace {

constexpr std::string_view kFormatting = "()[]{} -.";

// A number as it grows; what does not fit is remembered as too long.
class Draft {
  public:
    Draft() = default;
    explicit Draft(std::string_view text) { Add(text); }

    Draft& Add(std::string_view text) {
        const std::size_t count = std::min(text.size(), text_.size() - size_);
        std::copy_n(text.data(), count, text_.data() + size_);
        size_ += count;
        isTooLong_ = isTooLong_ || count < text.size() || size_ > kMaxTelephoneNumber;
        return *this;
    }
    [[nodiscard]] std::string_view View() const { return {text_.data(), size_}; }
    [[nodiscard]] bool IsTooLong() const { return isTooLong_; }

  private:
    // Room for one character more than a number has, which tells that it is too long.
    std::array<char, kMaxTelephoneNumber + 1> text_{};
    std::size_t size_ = 0;
    bool isTooLong_ = false;
};

// One conversion: the number's parts, and the trace if one is wanted.
class Conversion {
  public:
    Conversion(std::string_view number, const DialProperties& properties, NumberTrace* trace)
        : Properties(properties), trace_(trace) {
        StripNumber(number, suffix_, main_);
        Note("Separators and suffix are taken off", main_);
    }

    [[nodiscard]] std::string_view Main() const { return main_; }

    void Note(std::string_view rule, std::string_view number) const { NoteStep(trace_, rule, number); }

    // The last rule and its outcome.
    [[nodiscard]] Draft Done(std::string_view rule, std::initializer_list<std::string_view> parts) const {
        Draft draft;
        for (const std::string_view part : parts) draft.Add(part);
        NoteStep(trace_, rule, draft.View(), true);
        return draft;
    }

    StatusCode Finish(const Draft& draft, TelephoneNumber& result) const {
        result.Clear();
        if (draft.IsTooLong() || main_.Size() > kMaxTelephoneNumber) {
            Note("Over 40 characters: refused", "");
            return kNumberTooLong;
        }
        Draft whole(draft.View());
        if (!suffix_.IsEmpty() && draft.View().size() + suffix_.Size() < kMaxTelephoneNumber) {
            whole.Add(":").Add(suffix_);
            Note("The suffix is put back", whole.View());
        } else if (!suffix_.IsEmpty()) {
            Note("There is no room for the suffix", whole.View());
        }
        result = whole.View();
        return kDone;
    }

    const DialProperties& Properties;

  private:
    FixedText<kMaxTelephoneNumber + 1> main_; // one more, which tells that it is too long
    TelephoneNumber suffix_;
    NumberTrace* trace_;
};

bool TakePrefix(std::string_view& number, std::string_view prefix) {
    if (!number.starts_with(prefix)) return false;
    number.remove_prefix(prefix.size());
    return true;
}

bool BeginsWithAny(std::string_view number, const DialPrefixes& prefixes) {
    return std::ranges::any_of(prefixes, [number](std::string_view prefix) { return number.starts_with(prefix); });
}

bool IsLongerThanLocal(std::string_view number, const DialProperties& properties) {
    return properties.NumberWithoutAreaMaxLen != 0 && number.size() > properties.NumberWithoutAreaMaxLen;
}

Draft International(const Conversion& conversion) {
    const DialProperties& own = conversion.Properties;
    std::string_view number = conversion.Main();
    if (number.starts_with('+')) return conversion.Done("2: begins with +: it is international already", {number});
    if (!own.IntlAccess.IsEmpty() && TakePrefix(number, own.IntlAccess))
        return conversion.Done("3: begins with IntlAccess: + takes its place", {"+", number});
    if (!own.NatlAccess.IsEmpty() && TakePrefix(number, own.NatlAccess))
        return conversion.Done("4: begins with NatlAccess: + and Country take its place", {"+", own.Country, number});
    if (IsLongerThanLocal(number, own))
        return conversion.Done("5: longer than NumberWithoutAreaMaxLen: + and Country go before",
                               {"+", own.Country, number});
    return conversion.Done("5: a local number: +, Country and Area go before", {"+", own.Country, own.Area, number});
}

Draft InOwnArea(const Conversion& conversion, std::string_view number) {
    const DialProperties& own = conversion.Properties;
    if (BeginsWithAny(number, own.DialAsNatl))
        return conversion.Done("6: begins with a DialAsNatl entry: NatlAccess and Area go before",
                               {own.NatlAccess, own.Area, number});
    if (!own.DialAreaCode) return conversion.Done("6: DialAreaCode is NO: dialled as it stands", {number});
    if (!own.DialNatlAccessForLocal)
        return conversion.Done("6: DialAreaCode is YES: Area goes before", {own.Area, number});
    return conversion.Done("6: DialAreaCode and DialNatlAccessForLocal are YES: NatlAccess and Area go before",
                           {own.NatlAccess, own.Area, number});
}

// A number of the own country, without its prefix.
Draft InOwnCountry(const Conversion& conversion, std::string_view number, bool isNational) {
    const DialProperties& own = conversion.Properties;
    if (!own.NatlAccess.IsEmpty() && TakePrefix(number, own.NatlAccess)) {
        isNational = true;
        conversion.Note("4: begins with NatlAccess, which is taken off: a national number", number);
    }
    if (IsLongerThanLocal(number, own)) {
        isNational = true;
        conversion.Note("4: longer than NumberWithoutAreaMaxLen: a national number", number);
    }
    if (!isNational) {
        conversion.Note("5: not a national number", number);
        return InOwnArea(conversion, number);
    }
    if (TakePrefix(number, own.Area)) {
        conversion.Note("5a: begins with Area, which is taken off: a number of the own area", number);
        return InOwnArea(conversion, number);
    }
    if (BeginsWithAny(number, own.DialAsLocal))
        return conversion.Done("5b: begins with a DialAsLocal entry: dialled as it stands", {number});
    return conversion.Done("5b: a number of another area: NatlAccess goes before", {own.NatlAccess, number});
}

Draft Dialable(const Conversion& conversion) {
    const DialProperties& own = conversion.Properties;
    std::string_view number = conversion.Main();
    if (TakePrefix(number, "+")) {
        if (!TakePrefix(number, own.Country))
            return conversion.Done("2b: + and another country: IntlAccess takes the place of +",
                                   {own.IntlAccess, number});
        conversion.Note("2a: + and Country, which are taken off: a national number", number);
        return InOwnCountry(conversion, number, true);
    }
    if (!TakePrefix(number, own.IntlAccess)) {
        conversion.Note("3b: neither + nor IntlAccess: a number of the own country", number);
        return InOwnCountry(conversion, number, false);
    }
    if (!TakePrefix(number, own.Country))
        return conversion.Done("3a: IntlAccess and another country: dialled as it stands", {conversion.Main()});
    conversion.Note("3a: IntlAccess and Country, which are taken off: a national number", number);
    return InOwnCountry(conversion, number, true);
}

using Convert = StatusCode (*)(std::string_view, TelephoneNumber&, const DialProperties&, NumberTrace*);

StatusCode WithLoaded(Convert convert, std::string_view number, TelephoneNumber& result, NumberTrace* trace) {
    result.Clear();
    if (!DialPropertiesAreLoaded()) return kDialPropertiesMissing;
    const DialProperties& properties = GetDialProperties();
    if (static_cast<StatusCode>(properties.Mode) == kNumbersNotEdited) return kNumbersNotEdited;
    return convert(number, result, properties, trace);
}

} // namespace

void StripNumber(std::string_view number, TextPlace suffix, TextPlace main) {
    const std::size_t colon = std::min(number.find(':'), number.size());
    suffix.Assign(number.substr(std::min(colon + 1, number.size())));
    std::string digits(number.substr(0, colon));
    std::erase_if(digits, [](char c) { return kFormatting.find(c) != std::string_view::npos; });
    main.Assign(digits);
}

StatusCode MakeInternationalNumber(std::string_view number, TelephoneNumber& result, const DialProperties& properties,
                                   NumberTrace* trace) {
    const Conversion conversion(number, properties, trace);
    return conversion.Finish(International(conversion), result);
}

StatusCode MakeDialableNumber(std::string_view number, TelephoneNumber& result, const DialProperties& properties,
                              NumberTrace* trace) {
    const Conversion conversion(number, properties, trace);
    return conversion.Finish(Dialable(conversion), result);
}

StatusCode MakeInternationalNumber(std::string_view number, TelephoneNumber& result, NumberTrace* trace) {
    return WithLoaded(MakeInternationalNumber, number, result, trace);
}

StatusCode MakeDialableNumber(std::string_view number, TelephoneNumber& result, NumberTrace* trace) {
    return WithLoaded(MakeDialableNumber, number, result, trace);
}

} // namespace bv
