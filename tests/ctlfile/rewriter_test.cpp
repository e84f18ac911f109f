#include "ctlfile/rewriter.h"

#include <gtest/gtest.h>

#include "ctlfile/paths.h"
#include "memory_disk.h"

namespace bv::test {
namespace {

const std::string kPath = "C:\\X.INI";

class Rewriter : public testing::Test {
  protected:
    std::string After(std::string_view text, const KeyChange& change) {
        MemoryDisk::Put(kPath, text);
        EXPECT_TRUE(UpdateControlFile(kPath, change));
        return Result();
    }
    std::string After(std::string_view text, const RecordChange& change) {
        MemoryDisk::Put(kPath, text);
        EXPECT_TRUE(UpdateControlFileRecord(kPath, change));
        return Result();
    }
    MemoryDisk disk_;

  private:
    static std::string Result() {
        EXPECT_EQ(MemoryDisk::Get("C:\\X.TMP"), "(none)");
        return MemoryDisk::Get(kPath);
    }
};

TEST_F(Rewriter, ChangesOneKeyAndCopiesTheRest) {
    const std::string full(280, 'x');
    const struct {
        const char* Name;
        std::string Before;
        KeyChange Change;
        std::string After;
    } cases[] = {
        {"in place of the first, further ones go", "; top\r\n[A]\r\nk: 1\r\nm: 2\r\nK: 3\r\n\r\n[B]\r\nk: 4\r\n",
         KeyChange{"[A]", "k:", "new"}, "; top\r\n[A]\r\nk: new\r\nm: 2\r\n\r\n[B]\r\nk: 4\r\n"},
        {"at the end of its paragraph when it was not there", "[A]\r\nm: 2\r\n\r\n\r\n[B]\r\n",
         KeyChange{"[A]", "k:", "new"}, "[A]\r\nm: 2\r\nk: new\r\n\r\n[B]\r\n"},
        {"appended, the old ones gone", "[A]\r\nk: 1\r\nm: 2\r\n[B]\r\n",
         KeyChange{"[A]", "k:", "new", Placing::Append}, "[A]\r\nm: 2\r\nk: new\r\n\r\n[B]\r\n"},
        {"an empty value has no blank", "[A]\r\nk: 1\r\n", {"[A]", "k:", ""}, "[A]\r\nk:\r\n"},
        {"deleted wherever it stands", "[A]\r\nk: 1\r\nm: 2\r\nk=3\r\nk: 4\r\n", KeyChange{"[A]", "k:", {}},
         "[A]\r\nm: 2\r\nk=3\r\n"},
        {"emptied, comments and indented lines stay", "[A]\r\nk: 1\r\n; note\r\n\r\n x: 2\r\nm\r\n[B]\r\nz: 1\r\n",
         KeyChange{"[A]", {}, {}}, "[A]\r\n; note\r\n x: 2\r\n\r\n[B]\r\nz: 1\r\n"},
        {"only the first of two paragraphs, found in any case", "[a] x\r\nk: 1\r\n\r\n[A]\r\nk: 2\r\n\r\nk: 3\r\n",
         KeyChange{"[A]", "k:", "new"}, "[a] x\r\nk: new\r\n\r\n[A]\r\nk: 2\r\n\r\nk: 3\r\n"},
        {"a paragraph that is not there comes last", "[B]\r\nk: 1", KeyChange{"[A]", "k:", "new"},
         "[B]\r\nk: 1\r\n\r\n[A]\r\nk: new\r\n"},
        {"after one empty line that is there", "[B]\r\n \r\n", {"[A]", "k:", "new"}, "[B]\r\n\r\n[A]\r\nk: new\r\n"},
        {"in an empty file", "", {"[A]", "k:", "new"}, "[A]\r\nk: new\r\n"},
        {"deleting from it makes its header too", "[B]\r\n", {"[A]", "k:", {}}, "[B]\r\n\r\n[A]\r\n"},
        {"every line is put in order", "\xEF\xBB\xBFq\n[B]  \ta\t\n" + full + "z\r\n[A]\nk: 1\n",
         KeyChange{"[A]", "k:", "\xA3"}, "\xEF\xBB\xBFq\r\n[B]   a\r\n" + full + "\r\n[A]\r\nk: \xA3\r\n"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(After(one.Before, one.Change), one.After) << one.Name;
        if (!one.Change.Value) continue;
        EXPECT_EQ(After(one.After, one.Change), one.After) << one.Name << ", again";
    }
}

// The quick way over clean stretches of text must not be seen: the same change in front of, behind and inside long
// ones, with one unclean line at every place of a block.
TEST_F(Rewriter, CopiesLongTextsAsItCopiesShortOnes) {
    std::string clean;
    for (int n = 1; n < 60; ++n)
        clean += "Key" + std::to_string(n) + ": " + std::string(static_cast<std::size_t>(n) * 3, 'v') + "\r\n";
    const std::string_view flaws[] = {"lf\n", "tab\tin\r\n", "blank \r\n", "cr\rin\r\n", "del\x7f\r\n",
                                      "\r\n", " \r\n",       "\r\r\n",     "\n"};
    const std::string_view mended[] = {"lf\r\n", "tab in\r\n", "blank\r\n", "cr in\r\n", "del\r\n",
                                       "\r\n",   "\r\n",       "\r\n",      "\r\n"};
    for (std::size_t flaw = 0; flaw < std::size(flaws); ++flaw) {
        for (std::size_t at = 0; at != std::string::npos; at = clean.find('\n', at + 1)) {
            const std::size_t cut = at == 0 ? 0 : at + 1;
            const std::string head = clean.substr(0, cut);
            const std::string tail = clean.substr(cut);
            const std::string before = head + std::string(flaws[flaw]) + tail + "[A]\r\nk: 1\r\n\r\n[B]\r\n" + clean;
            const std::string after = head + std::string(mended[flaw]) + tail + "[A]\r\nk: 2\r\n\r\n[B]\r\n" + clean;
            ASSERT_TRUE(After(before, KeyChange{"[A]", "k:", "2"}) == after) << flaw << " at " << cut;
        }
    }
    const std::string longest(280, 'l');
    for (const std::size_t length : {255U, 256U, 279U, 280U, 281U, 400U}) {
        const std::string before = clean + std::string(length, 'l') + "\r\n" + clean + "[A]\r\n";
        const std::string after = clean + longest.substr(0, length) + "\r\n" + clean + "[A]\r\nk: 2\r\n";
        EXPECT_TRUE(After(before, KeyChange{"[A]", "k:", "2"}) == after) << length;
    }
}

TEST_F(Rewriter, EditsTheLinesBeforeTheFirstHeader) {
    MemoryDisk::Put(kPath, "k: 1\r\n\r\nm: 2\r\n[A]\r\nk: 3\r\n");
    ControlStream source = OpenShared(kPath, "rb");
    ControlStream destination = OpenShared("C:\\Y.INI", "w+b");
    EXPECT_TRUE(CopyReplacingKey(source, destination, {{}, "k:", "new"}));
    destination.Close();
    EXPECT_EQ(MemoryDisk::Get("C:\\Y.INI"), "k: new\r\nm: 2\r\n\r\n[A]\r\nk: 3\r\n");
}

TEST_F(Rewriter, ChangesOneRecord) {
    const std::string two = "[S]\r\n; c\r\n@1: \"a\"\r\nx: u\r\n\r\n@2: \"b\"\r\nx: v\r\n\r\n[T]\r\n@1: t\r\n";
    const struct {
        const char* Name;
        std::string Before;
        RecordChange Change;
        std::string After;
    } cases[] = {
        {"a field and the opening line replaced", two,
         RecordChange{"[S]", "@1:", "\"n\"", Placing::InPlace, "x:", "new"},
         "[S]\r\n; c\r\n@1: \"n\"\r\nx: new\r\n@2: \"b\"\r\nx: v\r\n\r\n[T]\r\n@1: t\r\n"},
        {"a field added at the record's end, the opening line kept", two,
         RecordChange{"[S]", "@1:", "\"n\"", Placing::Append, "y:", "new"},
         "[S]\r\n; c\r\n@1: \"a\"\r\nx: u\r\ny: new\r\n@2: \"b\"\r\nx: v\r\n\r\n[T]\r\n@1: t\r\n"},
        {"a field deleted", two, RecordChange{"[S]", "@2:", "\"b\"", Placing::Append, "x:", {}},
         "[S]\r\n; c\r\n@1: \"a\"\r\nx: u\r\n@2: \"b\"\r\n\r\n[T]\r\n@1: t\r\n"},
        {"the record's lines removed", two, RecordChange{"[S]", "@1:", "\"a\"", Placing::InPlace, "", {}},
         "[S]\r\n; c\r\n@1: \"a\"\r\n@2: \"b\"\r\nx: v\r\n\r\n[T]\r\n@1: t\r\n"},
        {"the opening line deleted alone", two, RecordChange{"[S]", "@1:", {}, Placing::InPlace, "x:", "new"},
         "[S]\r\n; c\r\nx: u\r\n@2: \"b\"\r\nx: v\r\n\r\n[T]\r\n@1: t\r\n"},
        {"a new record at the paragraph's end", two, RecordChange{"[S]", "@3:", "\"c\"", Placing::InPlace, "x:", "new"},
         "[S]\r\n; c\r\n@1: \"a\"\r\nx: u\r\n@2: \"b\"\r\nx: v\r\n@3: \"c\"\r\nx: new\r\n\r\n[T]\r\n@1: t\r\n"},
        {"a new paragraph", "[T]\r\n", RecordChange{"[S]", "@3:", "\"c\"", Placing::InPlace, "x:", "new"},
         "[T]\r\n\r\n[S]\r\n@3: \"c\"\r\nx: new\r\n"},
        {"at the end of the file", "[S]\r\n@1: a\r\n", RecordChange{"[S]", "@1:", "a", Placing::InPlace, "x:", "new"},
         "[S]\r\n@1: a\r\nx: new\r\n"},
        {"only the first record of the key", "[S]\r\n@1: a\r\nx: 1\r\nx: 2\r\n@1: a\r\nx: 3\r\n",
         RecordChange{"[S]", "@1:", "n", Placing::InPlace, "x:", "new"}, "[S]\r\n@1: n\r\nx: new\r\n@1: a\r\nx: 3\r\n"},
        {"in the first of two paragraphs though it stands in the second", "[S]\r\n[S]\r\n@1: a\r\nx: 1\r\n",
         RecordChange{"[S]", "@1:", "n", Placing::InPlace, "x:", "new"},
         "[S]\r\n@1: n\r\nx: new\r\n\r\n[S]\r\n@1: a\r\nx: 1\r\n"},
    };
    for (const auto& one : cases) EXPECT_EQ(After(one.Before, one.Change), one.After) << one.Name;
}

TEST_F(Rewriter, RefusesWhatItCannotDo) {
    const KeyChange change{"[A]", "k:", "1"};
    const std::string longest = "C:\\" + std::string(kMaxPath - 7, 'd') + ".INI";
    const std::string bare = "C:\\" + std::string(kMaxPath - 5, 'd');
    MemoryDisk::Put(longest, "");
    EXPECT_EQ(longest.size(), kMaxPath);
    EXPECT_TRUE(UpdateControlFile(longest, change));
    EXPECT_FALSE(UpdateControlFile(longest + "X", change)) << "269 characters";
    MemoryDisk::Put(bare, "x\r\n");
    EXPECT_FALSE(UpdateControlFile(bare, change)) << "the temporary's path would be too long";
    EXPECT_EQ(MemoryDisk::Get(bare), "x\r\n");
    EXPECT_FALSE(UpdateControlFile("C:\\MISSING.INI", change));
    EXPECT_FALSE(UpdateControlFile(longest, {{}, "k:", "1"})) << "no paragraph";
    EXPECT_EQ(disk_.Files.List("C:\\", "*.TMP").size(), 0U);
}

TEST(Paths, AreTakenApart) {
    const struct {
        const char* Path;
        const char* Extension;
        const char* File;
        const char* Share;
        const char* Temporary;
    } cases[] = {
        {"C:\\A.B\\SETUP.INI", "INI", "SETUP.INI", "\\A.B\\SETUP.INI", "C:\\A.B\\SETUP.TMP"},
        {"C:\\A.B\\NAME", "", "NAME", "\\A.B\\NAME", "C:\\A.B\\NAME.TMP"},
        {"\\\\srv\\share\\x.tmp", "tmp", "x.tmp", "\\x.tmp", "\\\\srv\\share\\x.TM2"},
        {"C:X.TMP", "TMP", "X.TMP", "X.TMP", "C:X.TM2"},
        {"X.", "", "X.", "X.", "X.TMP"},
        {"\\\\srv\\share", "", "share", "", "\\\\srv\\share.TMP"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(ExtensionOf(one.Path), one.Extension) << one.Path;
        EXPECT_EQ(FilePart(one.Path), one.File) << one.Path;
        EXPECT_EQ(SharePart(one.Path), one.Share) << one.Path;
        EXPECT_EQ(TemporaryPath(one.Path), one.Temporary) << one.Path;
    }
}

} // namespace
} // namespace bv::test
