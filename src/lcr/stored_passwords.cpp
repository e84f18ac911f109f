#include "lcr/stored_passwords.h"

#include <algorithm>

#include "ctlfile/key_fields.h"
#include "lcr/links.h"
#include "lcr/router_settings.h"
#include "options/option_keys.h"
#include "platform/ascii.h"

namespace bv {
namespace {

template <class Row>
bool HasPasswordKey(std::span<const Row> rows, std::string_view name) {
    return std::ranges::any_of(
        rows, [name](const Row& row) { return row.Field.Rule.IsPassword() && EqualFolded(row.Field.Name(), name); });
}

} // namespace

bool IsPasswordKey(std::string_view name) {
    return HasPasswordKey(OptionKeys(), name) || HasPasswordKey(RouterKeys(), name) || HasPasswordKey(LinkKeys(), name);
}

std::optional<std::size_t> FindPassword(std::string_view line) {
    const std::size_t key = std::min(line.find_first_not_of("; \t"), line.size());
    const std::size_t separator = line.find_first_of(":=", key);
    if (separator == std::string_view::npos || !IsPasswordKey(TrimBlanks(line.substr(key, separator - key)))) return {};
    const std::size_t value = line.find_first_not_of(" \t\r\n", separator + 1);
    return value == std::string_view::npos ? std::nullopt : std::optional(value);
}

std::string WithMaskedPassword(std::string_view line) {
    const std::optional<std::size_t> password = FindPassword(line);
    return std::string(line.substr(0, password.value_or(line.size()))).append(password ? kPasswordMark : "");
}

} // namespace bv
