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
    Flag,   // "--name"
    Option, // "--name VALUE"
};

struct Parameter {
    std::string_view Name; // as typed
    std::string_view Help;
    ParameterKind Kind = ParameterKind::Required;
    std::string_view ValueName = {}; // of an Option
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

    [[nodiscard]] auto begin() const { return given_.begin(); }
    [[nodiscard]] auto end() const { return given_.end(); }

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
    std::string_view Name = {}; // empty: the area's name alone is the command
    std::string_view Help = {};
    std::array<Parameter, 5> Parameters = {}; // those without a name do not count
    std::string_view Example = {};            // arguments to show how it is used
    Command Run = nullptr;
};

struct Area {
    std::string_view Name;
    std::string_view Help;
    std::span<const Verb> Verbs;
};

extern const Area kPathsArea;
extern const Area kVersionArea;
extern const Area kFileArea;
extern const Area kCoversheetArea;
extern const Area kLetterheadArea;
extern const Area kSecretArea;
extern const Area kCompletionArea;
extern const Area kManualArea;

inline constexpr std::array kAreas = {
    &kPathsArea,      &kVersionArea, &kFileArea,       &kCoversheetArea,
    &kLetterheadArea, &kSecretArea,  &kCompletionArea, &kManualArea,
};

} // namespace bv::console
