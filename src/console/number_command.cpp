// Telephone numbers, converted by the dialling properties.
#include <optional>

#include "console/commands.h"
#include "console/dial_source.h"
#include "console/located.h"
#include "console/output.h"
#include "dialling/numbers.h"
#include "shell/server_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kNumber = "NUMBER";

// One of the two forms of a number: how it comes about by the file's properties, and by the telephony.
struct Form {
    std::string_view Name;
    StatusCode (*ByFile)(std::string_view, TelephoneNumber&, NumberTrace*);
    StatusCode (*ByTelephony)(std::string_view, TelephoneNumber&, const std::string&, NumberTrace*);
};

constexpr Form kInternational = {"international", MakeInternationalNumber, TAPIMakeInternational};
constexpr Form kDialable = {"dialable", MakeDialableNumber, TAPIMakeDialable};

// Converts by the file's properties, or asks the telephony when the file leaves them to it. When that cannot be asked,
// a warning says so, and the file's properties serve, which are empty then.
class Converter {
  public:
    // 0, or the exit status after saying why the properties cannot be loaded.
    int Load() {
        if (const int fault = LoadDialProperties()) return fault;
        if (GetDialProperties().Mode != kDialTelephony) return kExitDone;
        telephony_.emplace();
        if (const StatusCode status = telephony_->Read(nullptr, ""); status != kDone) {
            telephony_.reset();
            ShowWarning(9101, TapiFailureText(status));
        }
        return kExitDone;
    }

    StatusCode Convert(const Form& form, const std::string& number, TelephoneNumber& result, NumberTrace* trace) const {
        return telephony_ ? form.ByTelephony(number, result, PathOf(ServerFile::Countries), trace)
                          : form.ByFile(number, result, trace);
    }

  private:
    std::optional<TelephonyUse> telephony_;
};

std::string FaultOf(const std::string& number, StatusCode status) {
    if (status == kNumberTooLong)
        return FormatText("NUMBER: \"%s\" has, or would have, over %d characters", number, kMaxTelephoneNumber);
    return FormatText("NUMBER: \"%s\" - the telephony service does not translate it", number);
}

template <const Form& form>
int Convert(Session& session, const Arguments& arguments) {
    Converter converter;
    if (const int fault = converter.Load()) return fault;
    TelephoneNumber result;
    const StatusCode status = converter.Convert(form, arguments[kNumber], result, nullptr);
    if (status != kDone) return session.Refuse(FaultOf(arguments[kNumber], status));
    if (session.Json)
        PrintRecord(session, {{"number", result.String()}});
    else
        PrintLines(session, {result.String()});
    return kExitDone;
}

int Explain(Session& session, const Arguments& arguments) {
    Converter converter;
    if (const int fault = converter.Load()) return fault;
    std::vector<Record> records;
    for (const Form& form : {kInternational, kDialable}) {
        TelephoneNumber result;
        NumberTrace trace;
        converter.Convert(form, arguments[kNumber], result, &trace);
        for (const auto& [rule, number] : trace)
            records.push_back({{"form", std::string(form.Name)}, {"rule", std::string(rule)}, {"number", number}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

constexpr Parameter kNumberParameter = {kNumber, "Telephone number as typed; a suffix may follow behind a colon"};

constexpr Verb kVerbs[] = {
    {.Name = "international",
     .Help = "The number with + and country code",
     .Parameters = {{kNumberParameter}},
     .Example = "'0181 123 4567'",
     .Run = Located<Convert<kInternational>>},
    {.Name = "dialable",
     .Help = "The number as it is dialled",
     .Parameters = {{kNumberParameter}},
     .Example = "'+44 (171) 123-4567:22'",
     .Run = Located<Convert<kDialable>>},
    {.Name = "explain",
     .Help = "The rules by which both come about: form, rule, and the number after it",
     .Parameters = {{kNumberParameter}},
     .Example = "'0181 123 4567'",
     .Run = Located<Explain>},
};

} // namespace

const Area kNumberArea = {
    "number", "Telephone numbers, converted by the dialling properties or by the telephony service", kVerbs};

} // namespace bv::console
