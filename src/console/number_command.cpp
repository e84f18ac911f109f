// Telephone numbers, converted by the dialling properties.
#include <string>

#include "console/commands.h"
#include "console/located.h"
#include "console/output.h"
#include "dialling/number_converter.h"

namespace bv::console {
namespace {

constexpr std::string_view kNumber = "NUMBER";
const std::string kApplication = "BVCTL"; // to the telephony

struct Form {
    std::string_view Name;
    NumberForm Kind;
};
constexpr Form kForms[] = {{"international", NumberForm::International}, {"dialable", NumberForm::Dialable}};

template <NumberForm form>
int Convert(Session& session, const Arguments& arguments) {
    NumberConverter converter;
    if (!converter.Load(kApplication)) return kExitRefused;
    TelephoneNumber result;
    const StatusCode status = converter.Convert(form, arguments[kNumber], result);
    if (status != kDone) return session.Refuse(FaultOfNumber(arguments[kNumber], status));
    if (session.Json)
        PrintRecord(session, {{"number", result.String()}});
    else
        PrintLines(session, {result.String()});
    return kExitDone;
}

int Explain(Session& session, const Arguments& arguments) {
    NumberConverter converter;
    if (!converter.Load(kApplication)) return kExitRefused;
    std::vector<Record> records;
    for (const auto& [name, form] : kForms) {
        TelephoneNumber result;
        NumberTrace trace;
        converter.Convert(form, arguments[kNumber], result, &trace);
        for (const auto& [rule, number, decides] : trace)
            records.push_back({{"form", std::string(name)}, {"rule", std::string(rule)}, {"number", number}});
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
     .Run = Located<Convert<NumberForm::International>>},
    {.Name = "dialable",
     .Help = "The number as it is dialled",
     .Parameters = {{kNumberParameter}},
     .Example = "'+44 (171) 123-4567:22'",
     .Run = Located<Convert<NumberForm::Dialable>>},
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
