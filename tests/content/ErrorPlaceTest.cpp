#include "support/ErrorRecorder.h"
#include "support/PdfBuilder.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace Quillet::Test {
namespace {

/// Writes down where each fault was.
class PlaceRecorder : public DefaultErrorHandler
{
public:
    void OnErrorAt(Error::Type type, const ErrorPlace& place) const override
    {
        places.push_back(place);
        OnError(type);
    }

    mutable std::vector<ErrorPlace> places;
};

/// Opens a file, in memory or on the disk, builds its page and asks for its title.
void Work(const std::string& file, const ErrorHandler& handler, bool isOnDisk = false)
{
    const auto document = Kernel::MakeCounted<PdfDocument>();
    document->SetErrorHandler(&handler);
    const std::string path = testing::TempDir() + "ErrorPlaceTest.pdf";
    if (isOnDisk) std::ofstream(path, std::ios::binary) << file;
    ASSERT_TRUE(isOnDisk ? document->OpenFile(path) : document->OpenMemory(file.data(), file.size()));
    document->GetPage(0)->BuildObjects();
    document->GetTitle();
    if (isOnDisk) std::remove(path.c_str());
}

/// A page with these contents, and an object 5.
PdfBuilder MakePage(const std::string& contents, std::string object)
{
    PdfBuilder builder = MakePageBuilder("");
    builder.Set(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents " + contents + " >>");
    builder.Add(std::move(object));
    return builder;
}

TEST(ErrorPlace, IsThatOfTheObjectOrTheContent)
{
    const PageParts form{.resources = "/XObject << /F 5 0 R >>",
                         .objects = {PdfBuilder::MakeStream("1 w bad) 2 J", "/Subtype /Form /BBox [0 0 9 9] ")}};
    const PageParts gray{.resources = "/ExtGState << /G 5 0 R >>", .objects = {"<< /LW (wide) >>"}};
    const PageParts info{.objects = {"<< /Title 12 >>"}};
    const struct
    {
        const char* what;
        PdfBuilder builder;
        int page;
        int object;
        /// Where in the file the place lies: behind the first of these, and up to the second.
        const char* from;
        const char* to;
    } rows[] = {
        {"an operand that is missing", MakePageBuilder("w"), 0, 4, "stream", "w\n"},
        {"the last stream of several", MakePage("[4 0 R 5 0 R]", PdfBuilder::MakeStream("w")), 0, 5, "stream", "w\n"},
        {"a form's content", MakePageBuilder("/F Do", form), 0, 5, "/BBox [0 0 9 9]", "1 w bad"},
        {"an entry of a dictionary", MakePageBuilder("/G gs", gray), 0, 5, "/LW", ">>"},
        {"what a filter cannot read", MakePage("5 0 R", PdfBuilder::MakeStream("no zlib", "/Filter /FlateDecode ")), 0,
         5, "stream", "no zlib"},
        {"information about the file", MakePageBuilder("", info), -1, 5, "/Title", ">>"},
    };
    const std::string junk = "junk in front\n";
    for (int i = 0; i < 2 * static_cast<int>(std::size(rows)); ++i) {
        const auto& row = rows[i / 2];
        SCOPED_TRACE(row.what);
        PdfBuilder builder = row.builder;
        if (row.page < 0) builder.trailer += " /Info 5 0 R";
        // The positions in a file count from the header on, those in memory from the first byte.
        const bool isOnDisk = i % 2 == 0;
        if (!isOnDisk) builder.header = junk + builder.header;
        const std::string file = (isOnDisk ? junk : "") + builder.Build();
        const PlaceRecorder recorder;
        Work(file, recorder, isOnDisk);
        ASSERT_FALSE(recorder.places.empty());
        const ErrorPlace& place = recorder.places.front();
        EXPECT_EQ(place.page, row.page);
        EXPECT_EQ(place.objectNumber, row.object);
        EXPECT_EQ(place.objectGeneration, 0);
        const std::size_t object = file.find("\n" + std::to_string(row.object) + " 0 obj");
        const std::size_t from = file.find(row.from, object);
        ASSERT_NE(from, file.npos);
        EXPECT_GT(place.position, static_cast<long long>(from));
        EXPECT_LE(place.position, static_cast<long long>(file.find(row.to, from)));

        // A handler of a host that knows nothing of places hears of as many.
        const ErrorRecorder kinds;
        Work(file, kinds, isOnDisk);
        EXPECT_EQ(kinds.kinds.size(), recorder.places.size());
        EXPECT_EQ(kinds.kinds.back(), recorder.lastError);
    }
}

TEST(ErrorPlace, HasNoPositionInAnObjectStream)
{
    PdfBuilder builder =
        MakePageBuilder("/G gs", {.resources = "/ExtGState << /G 5 0 R >>", .objects = {"<< /LW (wide) >>"}});
    const PlaceRecorder recorder;
    Work(builder.BuildCompressed(), recorder);
    ASSERT_FALSE(recorder.places.empty());
    EXPECT_EQ(recorder.places.front().objectNumber, 5);
    EXPECT_EQ(recorder.places.front().position, -1);
}

/// Faults outside content are those of the page that the host has named, and fatal ones are thrown as ever.
TEST(ErrorPlace, KnowsThePageThatTheHostNamed)
{
    const std::string file = MakePagePdf("", {.entries = "/Rotate 0"});
    const auto document = Kernel::MakeCounted<PdfDocument>();
    const PlaceRecorder recorder;
    document->SetErrorHandler(&recorder);
    ASSERT_TRUE(document->OpenMemory(file.data(), file.size()));
    document->SetPage(0);
    EXPECT_THROW(document->GetPage(0)->GetMediaBox(), Error::Type);
    ASSERT_EQ(recorder.places.size(), 1U);
    EXPECT_EQ(recorder.places[0].page, 0);
    EXPECT_EQ(recorder.places[0].objectNumber, 3);
    EXPECT_EQ(recorder.lastError, Error::PageTree);
}

} // namespace
} // namespace Quillet::Test
