#include "dialling/number_trial.h"

#include <algorithm>

#include "dialling/dialling_messages.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

StatusCode Convert(NumberForm form, std::string_view number, const DialProperties& properties, TelephoneNumber& result,
                   NumberTrace& trace) {
    const bool isDialable = form == NumberForm::Dialable;
    if (properties.Mode != kDialTelephony)
        return isDialable ? MakeDialableNumber(number, result, properties, &trace)
                          : MakeInternationalNumber(number, result, properties, &trace);
    const std::string countries = PathOf(ServerFile::Countries);
    return isDialable ? TAPIMakeDialable(number, result, countries, &trace)
                      : TAPIMakeInternational(number, result, countries, &trace);
}

std::string Outcome(StatusCode status, const TelephoneNumber& result) {
    if (status == kDone) return result.String();
    return FillMessage(status == kNumberTooLong ? kNumberTooLong40 : kNumberNotTranslated);
}

std::string Try(NumberForm form, std::string_view number, const DialProperties& properties, NumberTrial& trial) {
    TelephoneNumber result;
    NumberTrace trace;
    const StatusCode status = Convert(form, number, properties, result, trace);
    for (const NumberStep& step : trace)
        trial.Steps.push_back({form, std::string(step.Rule), step.Number, step.Decides});
    return Outcome(status, result);
}

// The keys that are empty and begin every number, with commas between them.
std::string EmptyKeys(const DialProperties& properties) {
    std::string keys;
    const auto add = [&keys](std::string_view key) { keys.append(keys.empty() ? "" : ", ").append(key); };
    if (properties.IntlAccess.IsEmpty()) add("IntlAccess");
    if (properties.Country.IsEmpty()) add("Country");
    if (properties.Area.IsEmpty()) add("Area");
    for (const DialListKey& list : kDialListKeys)
        if (std::ranges::any_of(properties.*list.List, &DialPrefix::IsEmpty)) add(list.Name());
    return keys;
}

} // namespace

NumberTrial TryNumber(std::string_view number, const DialProperties& properties) {
    NumberTrial trial;
    if (number.empty()) return trial;
    trial.International = Try(NumberForm::International, number, properties, trial);
    trial.Dialable = Try(NumberForm::Dialable, number, properties, trial);
    return trial;
}

std::string WarningOf(const DialLocations& locations, const DialProperties& shown, StatusCode telephony) {
    const std::string path = PathOf(ServerFile::Dialling);
    if (locations.Mode == kDialNoEditing) return FillMessage(kNumbersNotEditedNote);
    if (locations.Mode == kDialTelephony && telephony != kDone) return TapiFailureText(telephony);
    if (locations.Mode == kDialLocation && !locations.Chosen) {
        if (IsChanged(locations)) return FillMessage(kNoLocationChosen);
        return locations.Stamp.IsThere ? FillMessage(kNoSelectedLocation, path) : FillMessage(kNoDiallingProperties);
    }
    if (const std::string keys = EmptyKeys(shown); !keys.empty()) return FillMessage(kEmptyBeginsNumbers, keys);
    return locations.Unnamed > 0 ? FillMessage(kUnnamedLocations, path, locations.Unnamed) : std::string();
}

} // namespace bv
