#include "document/DocumentState.h"

#include <Quillet/PdfDocument.h>

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <Kernel/LocalisedString.h>
#include <Kernel/MemoryInStream.h>
#include <Story/StyleSheet.h>

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace Quillet {
namespace {

using testing::ElementsAre;

const std::string c_content = "0 0 10 10 re f";

TEST(PdfDocumentTest, ErrorNamesAreFixed)
{
    EXPECT_STREQ(GetErrorName(Error::UnimplementedColourProfile), "unimplemented colour profiile");
    EXPECT_STREQ(GetErrorName(Error::StreamLineEnd), "");
    EXPECT_STREQ(GetErrorName(Error::CutShort), "cut short");
    for (const int unknown : {26, -1})
        EXPECT_STREQ(GetErrorName(static_cast<Error::Type>(unknown)), "Unknown error");
}

TEST(PdfDocumentTest, OpensWhateverItSaysOfItself)
{
    PdfBuilder builder = MakePageBuilder("");
    builder.trailer += " /Info " + std::to_string(builder.Add("<< /Title (T) >>")) + " 0 R";
    std::string file = builder.Build();
    // The last entry of the table leads beyond the end of the file.
    file.replace(file.find("trailer") - 20, 10, "0000900000");
    TestDocument document(file);
    ASSERT_TRUE(document.isOpen);
    EXPECT_EQ(document->GetTitle(), "");
    EXPECT_TRUE(document.Build());
}

TEST(PdfDocumentTest, KeepsTheErrorWorthTelling)
{
    const DefaultErrorHandler handler;
    handler.OnError(Error::General);
    handler.OnError(Error::UnimplementedFilter);
    EXPECT_EQ(handler.lastError, Error::General);
    EXPECT_THROW(handler.OnError(Error::XRefTable), Error::Type);
    EXPECT_EQ(handler.lastError, Error::XRefTable);

    const ErrorForwarder alone;
    EXPECT_THROW(alone.OnError(Error::PdfHeader), Error::Type);
    EXPECT_FALSE(alone.Check(false, Error::General));
    EXPECT_EQ(alone.GetErrorPage(), -2);
}

TEST(PdfDocumentTest, ToleratesAndRefusesFileEnds)
{
    // Longer than the stretch at its end that is searched.
    const std::string file = MakePagePdf(c_content + std::string(1024, ' '));
    const std::size_t marker = file.rfind("startxref");
    const std::tuple<const char*, std::string, int> cases[] = {
        {"clean", file, Error::None},
        {"zeros behind", file + std::string(2000, '\0'), Error::None},
        {"a half marker", file.substr(0, file.rfind("%%")) + "%EOF", Error::None},
        {"rubbish behind", file + std::string(2000, 'x'), Error::PdfTrailer},
        {"only zeros", std::string("%PDF-1.4") + std::string(3000, '\0'), Error::PdfTrailer},
        {"no marker", file.substr(0, marker), Error::PdfTrailer},
        {"start beyond the end", file.substr(0, marker) + "startxref\n99999999\n%%EOF", Error::PdfTrailer},
        {"negative start", file.substr(0, marker) + "startxref\n-5\n%%EOF", Error::PdfTrailer},
        {"start at 0", file.substr(0, marker) + "startxref\n0\n%%EOF", Error::XRefTable},
        {"start in an object", file.substr(0, marker) + "startxref\n25\n%%EOF", Error::XRefTable},
        {"no header", std::string(1100, ' ') + file, Error::PdfHeader},
        {"empty", "", Error::PdfHeader},
        {"tiny", "%PDF-1.4", Error::PdfTrailer},
    };
    for (const auto& [what, bytes, error] : cases) {
        TestDocument document(bytes);
        EXPECT_EQ(document.isOpen, error == Error::None) << what;
        EXPECT_EQ(document.GetErrors().empty() ? int{Error::None} : document.GetErrors().back(), error) << what;
    }
}

TEST(PdfDocumentTest, RubbishAheadShiftsFilesButNotMemory)
{
    const std::string file = std::string(100, '#') + MakePagePdf(c_content);
    const auto path = std::filesystem::temp_directory_path() / "quillet-rubbish-ahead.pdf";
    std::ofstream(path, std::ios::binary) << file;
    const auto document = Kernel::MakeCounted<PdfDocument>();
    EXPECT_TRUE(document->IsPdfFile(path.string()));
    EXPECT_TRUE(document->OpenFile(path.string()));
    EXPECT_EQ(document->GetDocName(), path.string());
    EXPECT_FALSE(document->OpenMemory(file.data(), file.size()));
    EXPECT_EQ(document->GetDefaultErrorHandler()->lastError, Error::XRefTable);
    std::filesystem::remove(path);
    EXPECT_FALSE(document->OpenFile(path.string()));
    EXPECT_FALSE(document->IsPdfFile(path.string()));
}

TEST(PdfDocumentTest, VersionComesFromHeaderAndCatalog)
{
    const std::tuple<const char*, const char*, const char*, bool> cases[] = {
        {"%PDF-1.4\n", "", "PDF-1.4", true},
        {"%PDF-1.4\n", "/Version /1.7", "PDF-1.7", true},
        {"%PDF-1.4\n", "/Version /1.3", "PDF-1.4", true},
        {"%PDF-2.0\n", "", "PDF-2.0", true},
        {"%PDF-3.0\n", "", "PDF-3.0", false},
        {"%PDF-x %PDF-1.5\n", "", "PDF-1.5", true},
    };
    for (const auto& [header, catalog, version, isKnown] : cases) {
        PdfBuilder builder = MakePageBuilder(c_content, {.catalog = catalog});
        builder.header = header;
        // Positions count from the accepted mark in files only.
        TestDocument document(builder.Build());
        ASSERT_TRUE(document.isOpen) << header;
        EXPECT_EQ(document->GetVersionString(), version);
        EXPECT_EQ(document.GetErrors().empty(), isKnown) << header;
    }
}

TEST(PdfDocumentTest, AnswersMetadata)
{
    PdfBuilder builder = MakePageBuilder(c_content, {.catalog = "/Metadata 6 0 R"});
    builder.Add("<< /Title (\xFE\xFF) /Author (Ada) /Keywords (a, b) /GTS_PDFXVersion (PDF/X-4) >>");
    builder.AddStream("<xmp/>");
    builder.trailer += " /Info 5 0 R";
    TestDocument document(builder.Build());
    EXPECT_EQ(document->GetTitle(), "");
    EXPECT_EQ(document->GetAuthor(), "Ada");
    EXPECT_THAT(document->GetKeywords(), ElementsAre("a", " b"));
    EXPECT_EQ(document->GetVersionString(), "PDF/X-4");
    EXPECT_EQ(document->GetXVersion(), 4);
    EXPECT_EQ(document->GetXmpMetadata(), "<xmp/>");
    EXPECT_EQ(document->GetState().fileId.size(), 2u);
    EXPECT_TRUE(document->HasOwnerPermissions());
    EXPECT_FALSE(document->IsRestricted());
}

TEST(PdfDocumentTest, OpensAgainAfterAnotherFile)
{
    const std::string first = MakePagePdf(c_content);
    Kernel::MemoryInStream stream(first);
    const std::string second = MakePagePdf("1 1 5 5 re f 2 2 5 5 re f", {.entries = "/MediaBox [0 0 50 60]"});
    const auto document = Kernel::MakeCounted<PdfDocument>();
    EXPECT_THROW(document->GetPage(0), Error::Type);
    ASSERT_TRUE(document->OpenStream(stream, "stream"));
    EXPECT_EQ(document->GetDocName(), "stream");
    EXPECT_EQ(document->GetPage(0)->BuildObjects()->children.size(), 1u);
    ASSERT_TRUE(document->OpenMemory(second.data(), second.size()));
    EXPECT_EQ(document->GetPage(0)->BuildObjects()->children.size(), 2u);
    EXPECT_EQ(document->GetPage(0)->GetMediaBox().bottom, 60);
}

TEST(PdfDocumentTest, NamesStylesByTheirLooks)
{
    TestDocument document(MakePageBuilder("").Build());
    EXPECT_FALSE(document->GetStyleSheet());
    const Kernel::LocalisedString bullet("Bullet Character %1", "Import Style Name");
    const Kernel::LocalisedString cap("Drop Cap Character %1", "Import Style Name");
    const auto makeName = [&](double size, const Kernel::LocalisedString& name) {
        const auto delta = Kernel::MakeCounted<Story::Delta>();
        delta->doubles[Story::GlyphAtt::Size] = size;
        return document->MakeStyleName(delta, name);
    };
    EXPECT_EQ(document->MakeStyleName(nullptr, bullet), "");
    EXPECT_EQ(makeName(1, bullet), "Bullet Character 1");
    EXPECT_EQ(makeName(2, cap), "Drop Cap Character 2");
    EXPECT_EQ(makeName(1, cap), "Bullet Character 1");
    Kernel::LocalisedString::SetTable([](const std::string& key, const std::string& context) {
        return key == "Drop Cap Character %1" && context == "Import Style Name" ? "Initiale %1" : "";
    });
    EXPECT_EQ(makeName(3, cap), "Initiale 3");
    Kernel::LocalisedString::SetTable(nullptr);

    const auto sheet = document->GetStyleSheet();
    ASSERT_EQ(sheet->GetStyles().size(), 3U);
    EXPECT_EQ(sheet->GetStyles()[1]->GetName(), "Drop Cap Character 2");
    EXPECT_EQ(sheet->GetStyles()[1]->GetType(), Story::StyleType::Character);
    EXPECT_EQ(sheet->GetStyles()[1]->GetDelta()->doubles.at(Story::GlyphAtt::Size), 2);
    document->Close();
    EXPECT_FALSE(document->GetStyleSheet());
    EXPECT_EQ(makeName(4, cap), "Drop Cap Character 1");
}

/// Every truncation and every changed byte opens or fails with a kind; pages are built as far as they go.
TEST(PdfDocumentTest, DamagedFilesOpenOrFailWithAKind)
{
    const PageParts parts{.resources = "/XObject << /F 5 0 R >> /ExtGState << /G << /LW 2 /D [[1 2] 0] >> >>",
                          .objects = {PdfBuilder::MakeStream("q 0 0 5 5 re W n 1 0 0 rg 0 0 9 9 re f Q",
                                                             "/Type /XObject /Subtype /Form /BBox [0 0 9 9]")}};
    const PdfBuilder builder = MakePageBuilder("q /G gs 1 0 0 1 5 5 cm /F Do Q BT /X 1 Tf (a) Tj ET", parts);
    const auto run = [](const std::string& bytes) {
        TestDocument document(bytes);
        if (document.isOpen && document->GetPageCount() > 0) document.Build();
        return document.isOpen;
    };
    int openCount = 0;
    for (const std::string& file : {builder.Build(), builder.BuildCompressed()}) {
        ASSERT_TRUE(run(file));
        for (std::size_t length = 0; length < file.size(); ++length)
            run(file.substr(0, length));
        for (std::size_t i = 0; i < file.size(); ++i) {
            for (const char byte : {'\0', '(', '9', '\xFF'}) {
                std::string damaged = file;
                damaged[i] = byte;
                openCount += run(damaged);
            }
        }
    }
    EXPECT_GT(openCount, 1000);
}

} // namespace
} // namespace Quillet
