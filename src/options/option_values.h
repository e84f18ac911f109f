// How the options' own types of value stand in the file. For the table of keys and the reader of older files.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ctlfile/key_fields.h"
#include "ctlfile/reader.h"
#include "options/option_keys.h"
#include "platform/ascii.h"
#include "users/permissions.h"
#include "users/print_words.h"

namespace bv {

template <>
struct ChoiceWords<ArchiveMode> {
    static constexpr std::string_view kWords[] = {"NO", "YES", "STATUS"};
};
template <>
struct ChoiceWords<FaxQuality> {
    static constexpr std::string_view kWords[] = {"HIGH", "DRAFT"};
};
template <>
struct ChoiceWords<MailSystem> {
    static constexpr std::string_view kWords[] = {"", "MSMAIL", "EXCHANGE", "CCMAIL", "MAPI", "GATEWAY"};
};
template <>
struct ChoiceWords<SheetPages> {
    static constexpr std::string_view kWords[] = {"1", "2", "4"};
};
template <>
struct ChoiceWords<ChargeCodeUse> {
    static constexpr std::string_view kWords[] = {"NO", "YES", "OPTIONAL"};
};

template <>
struct ValueCodec<std::optional<SendTimeRange>> {
    using Period = std::optional<SendTimeRange>;

    static std::string Text(const Period& period) {
        constexpr std::size_t kAmple = 100;
        std::string text;
        UserPermissions permissions;
        if (period) permissions.SendTime = *period;
        if (period) FormatSendTime(text, kAmple, permissions);
        return text;
    }
    static bool Store(Period& place, std::string_view text) {
        SendTimeRange range;
        if (!ParseSendTime(text, range)) return false;
        place = text.empty() ? Period() : range;
        return true;
    }
    // The whole day, which is written as nothing, would come back as no period at all.
    static bool IsGood(std::string_view text) {
        Period given;
        Period kept;
        return IsValidSendTime(text) && Store(given, text) && Store(kept, Text(given)) && kept == given;
    }
    static constexpr ValueRule kRule = {ValueRule::Form::Other,
                                        0,
                                        {},
                                        "a part of the day such as AFTER 18:00 BEFORE 08:00 SAT SUN, or nothing",
                                        IsGood};
};

// Words that are there or not, in any order and case, and behind them the words that mean nothing here.
template <std::size_t N>
using WordFlags = std::array<std::pair<std::string_view, bool>, N>;

template <std::size_t N>
std::string FlagsText(const WordFlags<N>& flags, std::string_view others) {
    std::string text;
    for (const auto& [word, isSet] : flags) {
        if (!isSet) continue;
        if (!text.empty()) text += ' ';
        text += word;
    }
    if (!text.empty() && !others.empty()) text += ' ';
    return text.append(others);
}

// Sets the flags whose words are there, and returns the other words.
template <std::size_t N>
std::string SetFlags(WordFlags<N>& flags, std::string_view text) {
    std::string others;
    for (std::optional<std::string_view> rest = text; rest && !rest->empty();) {
        const QuotedToken token = ParseQuotedToken(rest);
        const auto isWord = [&token](const auto& flag) { return EqualFolded(flag.first, *token.Token); };
        const auto found = std::ranges::find_if(flags, isWord);
        if (found != flags.end())
            found->second = true;
        else
            others.append(others.empty() ? "" : " ").append(*token.Token);
        rest = token.Rest;
    }
    return others;
}

template <>
struct ValueCodec<SentPrint> {
    static std::string Text(const SentPrint& print) {
        return FlagsText<2>({{{kPrintStatus, print.Status}, {kPrintMessage, print.Message}}}, print.Others);
    }
    static bool Store(SentPrint& place, std::string_view text) {
        WordFlags<2> flags = {{{kPrintStatus, false}, {kPrintMessage, false}}};
        std::string others = SetFlags(flags, text);
        place = {flags[0].second, flags[1].second, std::move(others)};
        return true;
    }
    static bool IsGood(std::string_view text) {
        SentPrint print;
        return Store(print, text) && print.Others.empty();
    }
    static constexpr ValueRule kRule = {ValueRule::Form::Other, 0, {}, "any of STATUS and MESSAGE", IsGood};
};

template <>
struct ValueCodec<RecdPrint> {
    static std::string Text(const RecdPrint& print) {
        return FlagsText<3>(
            {{{kPrintStatus, print.Status}, {kPrintMessage, print.Message}, {kPrintDelete, print.Delete}}},
            print.Others);
    }
    static bool Store(RecdPrint& place, std::string_view text) {
        WordFlags<3> flags = {{{kPrintStatus, false}, {kPrintMessage, false}, {kPrintDelete, false}}};
        std::string others = SetFlags(flags, text);
        place = {flags[0].second, flags[1].second, flags[2].second, std::move(others)};
        return true;
    }
    static bool IsGood(std::string_view text) {
        RecdPrint print;
        return Store(print, text) && print.Others.empty();
    }
    static constexpr ValueRule kRule = {ValueRule::Form::Other, 0, {}, "any of STATUS, MESSAGE and DELETE", IsGood};
};

} // namespace bv
