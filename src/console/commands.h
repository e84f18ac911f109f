// The companion's commands, as tables: the command line, its help, the completion scripts and the manual are all
// made from them.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/session.h"

namespace bv::console {

enum class ParameterKind {
    Required,
    Optional,
    ZeroOrMore, // these two come last
    OneOrMore,
    Flag,   // "--name"
    Option, // "--name VALUE"
};

struct Parameter {
    std::string_view Name; // as typed
    std::string_view Help;
    ParameterKind Kind = ParameterKind::Required;
    std::string_view ValueName = {}; // of an Option
    bool TakesTabs = false;          // alone of all control characters
    bool IsPath = false;             // of this system, or a Windows path
};

// The parameters that were given, by their names in the table.
class Arguments {
  public:
    void Add(std::string_view name, std::string value) { given_.emplace_back(name, std::move(value)); }
    [[nodiscard]] bool Has(std::string_view name) const { return Find(name) != nullptr; }

    // The value; empty when the parameter was not given.
    const std::string& operator[](std::string_view name) const {
        static const std::string none;
        const std::string* value = Find(name);
        return value != nullptr ? *value : none;
    }

    // The values of a parameter that may be given more than once.
    [[nodiscard]] std::vector<std::string> All(std::string_view name) const {
        std::vector<std::string> values;
        for (const auto& [given, value] : given_)
            if (given == name) values.push_back(value);
        return values;
    }

    [[nodiscard]] auto begin() const { return given_.begin(); }
    [[nodiscard]] auto end() const { return given_.end(); }
    [[nodiscard]] auto begin() { return given_.begin(); }
    [[nodiscard]] auto end() { return given_.end(); }

  private:
    [[nodiscard]] const std::string* Find(std::string_view name) const {
        for (const auto& [given, value] : given_)
            if (given == name) return &value;
        return nullptr;
    }

    std::vector<std::pair<std::string_view, std::string>> given_;
};

// Returns the exit status.
using Command = int (*)(Session& session, const Arguments& arguments);

struct Verb {
    // "set", or "telnum set" for a verb of a group; empty: the area's name alone is the command.
    std::string_view Name = {};
    std::string_view Help = {};
    std::array<Parameter, 8> Parameters = {}; // those without a name do not count
    std::string_view Example = {};            // arguments to show how it is used
    Command Run = nullptr;                    // of a verb that only reads
    Command Change = nullptr;                 // of one that writes or starts something, or rehearses that

    [[nodiscard]] Command Action() const { return Change != nullptr ? Change : Run; }
};

struct Area {
    std::string_view Name;
    std::string_view Help;
    std::span<const Verb> Verbs;
    std::span<const std::string_view> Unused = {}; // global options that are refused, since they would mean nothing
};

// Those that mean nothing where no file of the server is read.
inline constexpr std::array<std::string_view, 7> kServerOptions = {"--ini",    "--drive",  "--yes",  "--dry-run",
                                                                   "--reveal", "--header", "--quiet"};

extern const Area kPathsArea;
extern const Area kVersionArea;
extern const Area kFileArea;
extern const Area kRecoverArea;
extern const Area kUserArea;
extern const Area kGroupArea;
extern const Area kWhereUsedArea;
extern const Area kDeviceArea;
extern const Area kPrinterArea;
extern const Area kOptionArea;
extern const Area kCoversheetArea;
extern const Area kLetterheadArea;
extern const Area kRoutingArea;
extern const Area kDestinationArea;
extern const Area kLinkArea;
extern const Area kRouterArea;
extern const Area kLcrArea;
extern const Area kDiallingArea;
extern const Area kNumberArea;
extern const Area kMailUserArea;
extern const Area kMailNameArea;
extern const Area kMailArea;
extern const Area kSecretArea;
extern const Area kCompletionArea;
extern const Area kManualArea;

inline constexpr std::array kAreas = {
    &kPathsArea,      &kVersionArea,    &kFileArea,     &kRecoverArea,     &kUserArea,
    &kGroupArea,      &kWhereUsedArea,  &kDeviceArea,   &kPrinterArea,     &kOptionArea,
    &kCoversheetArea, &kLetterheadArea, &kRoutingArea,  &kDestinationArea, &kLinkArea,
    &kRouterArea,     &kLcrArea,        &kDiallingArea, &kNumberArea,      &kMailUserArea,
    &kMailNameArea,   &kMailArea,       &kSecretArea,   &kCompletionArea,  &kManualArea,
};

} // namespace bv::console
