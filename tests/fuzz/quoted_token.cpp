// Taking a list apart into its tokens, by both ways there are.
#include <algorithm>

#include "ctlfile/reader.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

void RequireInside(std::string_view part, std::string_view text) {
    Require(part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size(), "inside the text");
}

void CheckTokens(std::string_view text) {
    std::optional<std::string_view> rest = text;
    while (rest) {
        const model::Token expected = model::FirstToken(*rest);
        const QuotedToken found = ParseQuotedToken(rest);
        Require(found.Token.has_value() && found.Rest.has_value() == expected.Next.has_value(), "a token and a rest");
        RequireEqual(*found.Token, expected.Text, "token");
        RequireInside(*found.Token, *rest);
        if (found.Rest) {
            RequireInside(*found.Rest, *rest);
            Require(!found.Rest->empty() && found.Rest->size() < rest->size(), "each token leaves less");
            RequireEqual(*found.Rest, rest->substr(*expected.Next), "rest");
        }
        rest = found.Rest;
    }
}

// Blanks and commas end a token; "=" and ":" also part it from the next when the search starts at it.
void CheckList(std::string_view text) {
    while (true) {
        constexpr std::string_view kParts = " \t\r\n,:=";
        std::size_t at = std::min(text.find_first_of(kParts), text.size());
        while (at < text.size() && kParts.find(text[at]) != std::string_view::npos) ++at;
        const std::optional<std::string_view> found = NextListToken(text);
        Require(found.has_value() == (at < text.size()), "a next token");
        if (!found) return;
        RequireInside(*found, text);
        RequireEqual(*found, text.substr(at, text.find_first_of(" \t\r\n,", at) - at), "next token");
        text.remove_prefix(at);
    }
}

void CheckQuotes(std::string_view text) {
    std::string bare(text);
    if (!bare.empty() && bare.front() == '"') bare.erase(0, 1);
    if (!bare.empty() && bare.back() == '"') bare.pop_back();
    RequireEqual(StripQuotes(text), bare, "StripQuotes");
}

} // namespace

void TryInput(std::string_view text) {
    CheckTokens(text);
    CheckList(text);
    CheckQuotes(text);
    const std::string line(text);
    RequireEqual(KeyValue(line).value_or(""), model::Value(line), "KeyValue");
    Require(!ParseQuotedToken({}).Token && !ParseQuotedToken({}).Rest, "no text has no token");
}

} // namespace bv::fuzz
