#include "ctlfile/reader.h"

#include <gtest/gtest.h>
#include <vector>

#include "memory_disk.h"

namespace bv::test {
namespace {

const std::string kPath = "C:\\X.INI";

class Reader : public testing::Test {
  protected:
    ControlStream Open(std::string_view text) {
        MemoryDisk::Put(kPath, text);
        return OpenShared(kPath, "rb");
    }
    std::vector<std::string> Lines(std::string_view text) {
        ControlStream stream = Open(text);
        std::vector<std::string> lines;
        for (ControlLine line; ReadControlLine(stream, line);) lines.push_back(line.String());
        return lines;
    }
    MemoryDisk disk_;
};

TEST_F(Reader, CleansAndCutsLines) {
    using Expected = std::vector<std::string>;
    const std::string full(280, 'x');
    const struct {
        const char* Name;
        std::string Text;
        Expected Lines;
    } cases[] = {
        {"an empty file", "", {}},
        {"CR LF and LF alike", "a: 1\r\nb: 2\nc", {"a: 1", "b: 2", "c"}},
        {"a tab, a NUL, an escape and a DEL are blanks",
         std::string("a\tb\0c\x1b"
                     "d\x7f"
                     "e\r\n",
                     11),
         {"a b c d e"}},
        {"a NUL hides no line", std::string("a\0\nb\n", 5), {"a", "b"}},
        {"a CR inside a line is a blank", "a\rb\r\n", {"a b"}},
        {"national characters and a mark at the start stay", "\xEF\xBB\xBF[A]\xA3\xFF\n", {"\xEF\xBB\xBF[A]\xA3\xFF"}},
        {"blanks at the end go, also control ones", "a: \t \x01\r\n \r\n", {"a:", ""}},
        {"280 characters stay whole", full + "\r\nnext", {full, "next"}},
        {"of 281 the last goes, not the next line", full + "y\nnext\n", {full, "next"}},
        {"a megabyte without an end", full + std::string(1 << 20, 'z'), {full}},
        {"blanks count towards the 280", "a" + std::string(290, ' ') + "b\nc", {"a", "c"}},
    };
    for (const auto& one : cases) EXPECT_EQ(Lines(one.Text), one.Lines) << one.Name;
}

TEST_F(Reader, FindsParagraphsForwardAndStaysWhenItFails) {
    ControlStream stream = Open("x: 0\r\n[options] tail\r\nk: 1\r\n [OPTIONS]\r\n;[OPTIONS]\r\n[OPTIONS]\nk: 2\n");
    ControlLine line;
    Position body = 0;
    FixedText<9> value;
    ASSERT_TRUE(FindParagraph(stream, "[OPTIONS]", line, &body));
    EXPECT_EQ(line, "[options] tail");
    EXPECT_TRUE(GetKeyString(stream, "K:", value, body));
    EXPECT_EQ(value, "1");
    ASSERT_TRUE(FindParagraph(stream, std::nullopt, line, &body));
    EXPECT_TRUE(GetKeyString(stream, "k:", value, body));
    EXPECT_EQ(value, "2");

    const Position at = stream.Tell();
    EXPECT_FALSE(FindParagraph(stream, "[OPTIONS]", line));
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(stream.Tell(), at);
}

TEST_F(Reader, FindsKeysOnlyInTheCurrentParagraph) {
    ControlStream stream = Open("[A]\r\n k: indented\r\n;k: comment\r\nTelnumType: t\r\nType: one; two\r\n"
                                "SystemArea=F:\\B\r\nType: twice\r\n@stop\r\nlast\r\n[B]\r\nk: b\r\n");
    ControlLine line;
    Position body = 0;
    ASSERT_TRUE(FindParagraph(stream, "[A]", line, &body));
    const struct {
        const char* Key;
        const char* Found; // none when the search must fail
    } cases[] = {
        {"k:", nullptr},
        {"type:", "Type: one; two"},
        {"SystemArea:", nullptr},
        {"Last", "last"},
        {"SYSTEMAREA=", "SystemArea=F:\\B"},
        {"T", "TelnumType: t"},
        {"Types and more", nullptr},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(FindKeyLine(stream, one.Key, line, body), one.Found != nullptr) << one.Key;
        EXPECT_EQ(line.View(), one.Found != nullptr ? one.Found : "") << one.Key;
        if (one.Found != nullptr) continue;
        EXPECT_EQ(stream.Tell(), body) << one.Key;
    }
    Position start = 0;
    ASSERT_TRUE(FindKeyLine(stream, "SystemArea", line, body, &start));
    EXPECT_FALSE(FindKeyLine(stream, "last", line, body, nullptr, '@'));
    EXPECT_TRUE(FindKeyLine(stream, std::nullopt, line, start)); // the first significant line there
    EXPECT_EQ(line, "SystemArea=F:\\B");
    EXPECT_FALSE(FindKeyLine(stream, "k:", line, 1 << 20)); // beyond the end
}

TEST_F(Reader, ReadsValuesByTheirForm) {
    ControlStream stream = Open("[A]\r\nText:  a:b;c  \r\nEmpty:\r\nNone\r\nNumber: +70000x\r\nMinus: -1\r\nWord: x\r\n"
                                "Blank:\t12\r\nLong: 123456789012\r\n");
    ControlLine line;
    Position body = 0;
    ASSERT_TRUE(FindParagraph(stream, "[A]", line, &body));
    FixedText<5> text("old");
    EXPECT_TRUE(GetKeyString(stream, "Text:", text, body));
    EXPECT_EQ(text, "a:b;c");
    EXPECT_TRUE(GetKeyString(stream, "Long:", text, body));
    EXPECT_EQ(text, "12345");
    EXPECT_TRUE(GetKeyString(stream, "Empty:", text, body));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(GetKeyString(stream, "Absent:", text, body));

    const struct {
        const char* Key;
        bool Found;
        int Number;
    } numbers[] = {{"Number:", true, 70000 - 65536},
                   {"Minus:", true, 65535},
                   {"Word:", true, 0},
                   {"Blank:", true, 12},
                   {"Empty:", false, 7},
                   {"None", false, 7},
                   {"Absent:", false, 7}};
    for (const auto& one : numbers) {
        std::uint16_t number = 7;
        EXPECT_EQ(GetKeyNumber(stream, one.Key, number, body), one.Found) << one.Key;
        EXPECT_EQ(number, one.Number) << one.Key;
    }
}

TEST_F(Reader, TakesBooleanWords) {
    const struct {
        const char* Word;
        std::optional<bool> Value;
    } cases[] = {{"yes", true}, {"On", true},  {"TRUE", true}, {"y", true},    {"1", true},
                 {"", true},    {"no", false}, {"N", false},   {"off", false}, {"False", false},
                 {"0", false},  {"maybe", {}}, {"yess", {}},   {"2", {}},      {"yes no", {}}};
    for (const auto& one : cases) {
        ControlStream stream = Open(std::string("Key: ") + one.Word + "\r\n");
        for (const bool before : {false, true}) {
            bool value = before;
            stream.Rewind();
            EXPECT_EQ(GetKeyBool(stream, "Key:", value), one.Value.has_value()) << one.Word;
            EXPECT_EQ(value, one.Value.value_or(before)) << one.Word;
        }
    }
}

TEST_F(Reader, WalksRecordsKeyByKey) {
    ControlStream stream = Open("[A]\r\n\r\nName: a\r\n; note\r\nFlag: maybe\r\nCount:\r\n[B]\r\n");
    ControlLine line;
    ASSERT_TRUE(FindParagraph(stream, "[A]", line));
    FixedText<9> text;
    std::uint16_t number = 7;
    bool flag = false;
    const Position start = stream.Tell();
    EXPECT_FALSE(ReadKeyNumber(stream, "Count:", number));
    EXPECT_EQ(stream.Tell(), start); // still before "Name:"
    EXPECT_TRUE(ReadKeyString(stream, "name:", text));
    EXPECT_EQ(text, "a");
    const Position flagAt = stream.Tell();
    EXPECT_FALSE(ReadKeyBool(stream, "Flag:", flag)); // a bad word leaves the line unread too
    EXPECT_EQ(stream.Tell(), flagAt);
    EXPECT_TRUE(ReadKeyString(stream, std::nullopt, text));
    EXPECT_EQ(text, "maybe");
    EXPECT_FALSE(ReadKeyNumber(stream, "Count:", number));
    EXPECT_TRUE(ReadKeyString(stream, "Count:", text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(ReadKeyString(stream, std::nullopt, text)); // the paragraph's end
    EXPECT_EQ(number, 7);
}

TEST(Tokens, PartAsWritten) {
    const struct {
        const char* Text;
        std::vector<std::string> Tokens;
    } cases[] = {
        {"FCLASS \"Fax modem\"", {"FCLASS", "\"Fax modem\""}},
        {"a,b\tc", {"a", "b", "c"}},
        {"a , ,, b", {"a", "b"}},
        {",a", {"", "a"}},
        {"\"\" x", {"\"\"", "x"}},
        {"\"no end, here", {"\"no end, here"}},
        {"a\"b c\"", {"a\"b", "c\""}},
        {"a   ", {"a"}},
    };
    for (const auto& one : cases) {
        std::vector<std::string> tokens;
        std::optional<std::string_view> rest = one.Text;
        while (rest) {
            const QuotedToken token = ParseQuotedToken(rest);
            tokens.emplace_back(*token.Token);
            rest = token.Rest;
        }
        EXPECT_EQ(tokens, one.Tokens) << one.Text;
    }
    EXPECT_FALSE(ParseQuotedToken(std::nullopt).Token);
    EXPECT_EQ(NextListToken("Key: =, one two"), "one");
    EXPECT_EQ(NextListToken("one,\"two"), "\"two");
    EXPECT_EQ(NextListToken("one, "), std::nullopt);
    EXPECT_EQ(StripQuotes("\"a \" b\""), "a \" b");
    std::string text = " a b\tc ";
    EXPECT_EQ(RemoveSpaces(text), 4U);
    EXPECT_EQ(text, "ab\tc");
}

} // namespace
} // namespace bv::test
