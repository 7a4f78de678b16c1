#include "document/DocumentState.h"
#include "document/XRefs.h"

#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "filters/Stream.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

PdfBuilder MakeBuilder()
{
    PdfBuilder builder;
    for (const char* body : {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>",
                             "<< /Value 7 /Self 3 0 R /Far 99 0 R /Gen 3 5 R >>"})
        builder.Add(body);
    return builder;
}

int GetValue(const TestDocument& document, int number = 3)
{
    return Dictionary(document.GetRef(number)).GetInt("Value", 0);
}

std::string AppendUpdate(std::string file, const std::string& objects, const std::string& sections,
                         const std::string& trailer)
{
    const std::size_t previous = std::stoul(file.substr(file.rfind("startxref") + 10));
    file += objects;
    const std::size_t start = file.size();
    return file + "xref\n" + sections + "trailer\n<< /Size 9 /Root 1 0 R /Prev " + std::to_string(previous) + trailer +
           " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF";
}

std::string MakeEntry(std::size_t offset, char kind = 'n')
{
    char entry[32];
    std::snprintf(entry, sizeof entry, "%010zu 00000 %c \n", offset, kind);
    return entry;
}

TEST(XRefsTest, ReadsTablesAndStreamsAlike)
{
    for (const std::string& file : {MakeBuilder().Build(), MakeBuilder().BuildCompressed()}) {
        TestDocument document(file);
        ASSERT_TRUE(document.isOpen);
        EXPECT_EQ(GetValue(document), 7);
        EXPECT_EQ(Dictionary(document.GetRef(3)).GetRef("Self"), document.GetRef(3));
        EXPECT_THAT(document.GetErrors(), IsEmpty());
    }
}

TEST(XRefsTest, DanglingReferencesAreEmptyDictionaries)
{
    TestDocument document(MakeBuilder().Build());
    for (const char* key : {"Far", "Gen"}) {
        Dictionary dictionary(Dictionary(document.GetRef(3)).GetRef(key));
        EXPECT_EQ(dictionary.GetInt("Value", 42), 42);
        EXPECT_THAT(dictionary.GetKeys(), IsEmpty());
    }
    EXPECT_THAT(document.GetErrors(), ElementsAre(Error::General, Error::General));
    EXPECT_EQ(Dictionary(Ref()).GetInt("Any", 7), 7);
    EXPECT_EQ(document.GetRef(12).GetName(), "R12");
    EXPECT_EQ(Ref(document.document, 12, 3).GetName(), "R12/3");
    EXPECT_EQ(Ref::FromPosition(Ref(), 99).GetName(), "P99");
}

TEST(XRefsTest, NewestSectionWins)
{
    const std::string file = MakeBuilder().Build();
    const auto update = [](const std::string& base) {
        return AppendUpdate(base, "3 0 obj << /Value 8 >> endobj\n", "3 1\n" + MakeEntry(base.size()), "");
    };
    // Without the blank before each line end: entries of 19 bytes, in the table and in an older one.
    const auto dropBlanks = [](std::string text) {
        for (auto pos = text.find(" \n", text.rfind("\nxref\n")); pos != text.npos; pos = text.find(" \n", pos))
            text.erase(pos, 1);
        return text;
    };
    const std::pair<std::string, int> rows[] = {
        {update(file), 8},
        {dropBlanks(update(dropBlanks(file))), 8},
        // Free entries hide older ones unless they are zero.
        {AppendUpdate(file, "", "3 1\n" + MakeEntry(0, 'f'), ""), 7},
        {AppendUpdate(file, "", "3 1\n" + MakeEntry(4, 'f'), ""), 0},
    };
    for (const auto& [bytes, value] : rows) {
        TestDocument document(bytes);
        ASSERT_TRUE(document.isOpen);
        EXPECT_EQ(GetValue(document), value);
        EXPECT_EQ(Dictionary(document.GetRef(1)).GetName("Type"), "Catalog");
    }
}

TEST(XRefsTest, HybridFilesReadTheStreamAfterTheirTable)
{
    const std::string base = MakeBuilder().Build();
    const std::string object = "5 0 obj << /Value 5 >> endobj\n";
    const std::size_t streamPos = base.size() + object.size();
    const std::string record{'\1', static_cast<char>(base.size() >> 8), static_cast<char>(base.size())};
    const std::string stream =
        "6 0 obj\n" + PdfBuilder::MakeStream(record + record, "/Type /XRef /W [1 2] /Size 9 /Index [5 1 3 1]") +
        "\nendobj\n";
    TestDocument document(AppendUpdate(base, object + stream, "0 0\n", " /XRefStm " + std::to_string(streamPos)));
    ASSERT_TRUE(document.isOpen);
    EXPECT_EQ(GetValue(document, 5), 5);
    EXPECT_EQ(document->GetState().xrefs.GetPos(3, 0), base.size());
}

TEST(XRefsTest, BrokenChainsAreFatal)
{
    const std::string file = MakeBuilder().Build();
    const std::size_t start = file.rfind("xref\n0");
    const auto replace = [&](std::string_view from, std::string_view to) {
        std::string changed = file;
        changed.replace(changed.find(from, start), from.size(), to);
        return changed;
    };
    const std::string self = "/Size 4 /Prev " + std::to_string(start);
    const std::pair<std::string, int> cases[] = {
        {replace("xref", "xfer"), Error::XRefTable},
        {replace(" n \n", " x \n"), Error::XRefTable},
        {replace("trailer", "tracker"), Error::XRefTable},
        {replace("/Size 4", self), Error::XRefTable},
        {replace("0 4\n", "0 5\n"), Error::XRefTable},
        {replace("/Root 1 0 R", ""), Error::Catalog},
        {replace("/Root 1 0 R", "/Root 3 0 R /Encrypt 3 0 R"), Error::UnimplementedEncryption},
    };
    for (const auto& [bytes, kind] : cases) {
        TestDocument document(bytes);
        EXPECT_FALSE(document.isOpen);
        EXPECT_THAT(document.GetErrors(), Contains(kind));
    }
}

TEST(XRefsTest, HugeClaimsTakeNoMemory)
{
    const std::string file = MakeBuilder().Build();
    for (const char* sections : {"0 2147483647\n", "2147483000 1\n", "-5 3\n", "0 99999999999999\n"}) {
        TestDocument document(AppendUpdate(file, "", sections + MakeEntry(17), ""));
        Dictionary(Ref(document.document, 2147483000, 0));
    }
    const std::size_t pos = file.size();
    for (const char* entries :
         {"/W [1 2 1] /Size 2147483647", "/W [2147483647 2147483647 1] /Size 5", "/W [-1 2 3] /Size 5",
          "/W [0 0 0] /Size 2147483647", "/W [1 2 1] /Index [2147483647 5 -1 -1]"}) {
        TestDocument document(file + "7 0 obj\n" +
                              PdfBuilder::MakeStream("abcdabcd", "/Type /XRef /Root 1 0 R " + std::string(entries)) +
                              "\nendobj\nstartxref\n" + std::to_string(pos) + "\n%%EOF");
        EXPECT_FALSE(document.isOpen) << entries;
    }
}

TEST(XRefsTest, WhatLeadsToItselfEnds)
{
    PdfBuilder builder = MakeBuilder();
    for (const char* object : {"4 0 R", "6 0 R", "5 0 R"})
        builder.Add(object);
    TestDocument document(builder.Build());
    for (const int number : {4, 5})
        EXPECT_EQ(Parser(document.GetRef(number)).NextInt(), 0);
    EXPECT_THAT(document.GetErrors(), Contains(Error::General));

    // Object 4 is the object stream: give it an entry that says it lies in itself.
    std::string file = MakeBuilder().BuildCompressed();
    const std::size_t record = file.rfind("stream\n", file.rfind("endstream")) + 7 + 4u * 7;
    file.replace(record, 7, std::string("\2\0\0\0\4\0\0", 7));
    EXPECT_FALSE(TestDocument(file).isOpen);
}

TEST(XRefsTest, CachesPerValue)
{
    struct Needed : RefCacheable
    {};
    struct Large : RefCacheable
    {
        std::size_t GetDispensableBytes() const override { return Limits::c_maxFontBytes / 2; }
    };
    TestDocument document(MakeBuilder().Build());
    const Ref object = document.GetRef(3);
    const auto first = Kernel::MakeCounted<Needed>();
    object.SetCache(first);
    object.SetCache(Kernel::MakeCounted<Needed>());
    EXPECT_EQ(object.GetCache<Needed>(), first);
    EXPECT_FALSE(Ref::FromPosition(object, object.GetPos() + 9).GetCacheBase());
    document->GetState().xrefs.ClearCaches();
    EXPECT_FALSE(object.GetCacheBase());
    document.GetRef(99).SetCache(first);
    EXPECT_FALSE(document.GetRef(99).GetCacheBase());

    // And no more than it may of what can be read again.
    const auto keeps = [&object](unsigned long long place, const Kernel::Counted<const RefCacheable>& value) {
        const Ref inside = Ref::FromPosition(object, object.GetPos() + place);
        inside.SetCache(value);
        return static_cast<bool>(inside.GetCacheBase());
    };
    EXPECT_TRUE(keeps(1, Kernel::MakeCounted<Large>()));
    EXPECT_TRUE(keeps(2, Kernel::MakeCounted<Large>()));
    EXPECT_FALSE(keeps(3, Kernel::MakeCounted<Large>()));
    EXPECT_TRUE(keeps(3, Kernel::MakeCounted<Needed>()));
    document->GetState().xrefs.ClearCaches();
    {
        const Budget::Scope budget(Kernel::MakeCounted<Budget>(-1), Budget::Share::All, nullptr);
        EXPECT_FALSE(keeps(1, Kernel::MakeCounted<Large>()));
        EXPECT_FALSE(keeps(2, Kernel::MakeCounted<Needed>()));
    }
    EXPECT_TRUE(keeps(1, Kernel::MakeCounted<Large>()));
}

} // namespace
} // namespace Quillet
