#include "colour/ColourSpaceFactory.h"
#include "colour/DeviceCmykColourSpace.h"
#include "colour/DeviceGrayColourSpace.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/TestProfile.h"
#include "document/DocumentState.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gmock/gmock.h>

namespace Quillet {
namespace {

struct Intents
{
    Intents(const std::string& intents, std::vector<std::string> objects)
        : document(MakePagePdf("", {.objects = std::move(objects), .catalog = "/OutputIntents " + intents})),
          factory(*document->GetState().colourSpaceFactory)
    {}

    TestDocument document;
    ColourSpaceFactory& factory;
};

TEST(OutputIntentTest, GivesItsProfileToTheDeviceOfItsModel)
{
    for (const std::string model : {"GRAY", "RGB ", "CMYK", "Lab "}) {
        SCOPED_TRACE(model);
        const Intents intents("[6 0 R]", {PdfBuilder::MakeStream(MakeTestProfile(model), "/N 4"),
                                          "<< /S /GTS_PDFX /DestOutputProfile 5 0 R >>"});
        const auto profile = intents.factory.GetOutputProfile();
        ASSERT_TRUE(profile);
        EXPECT_EQ(intents.factory.outputComponents, 4);
        EXPECT_EQ(intents.factory.deviceGray->GetICCProfile() == profile, model == "GRAY");
        EXPECT_EQ(intents.factory.deviceRgb->GetICCProfile() == profile, model == "RGB ");
        EXPECT_EQ(intents.factory.deviceCmyk->GetICCProfile() == profile, model == "CMYK");
        EXPECT_EQ(intents.document->GetICCProfiles(-1).GetProfileFor(profile->GetColourSpace()), profile);
        EXPECT_THAT(intents.document.GetErrors(), testing::IsEmpty());
    }
}

TEST(OutputIntentTest, TakesTheFirstThatGivesAProfile)
{
    const std::string good = PdfBuilder::MakeStream(MakeTestProfile("CMYK"), "/N 4");
    const std::string bad = PdfBuilder::MakeStream("no profile", "/N 3");
    const struct
    {
        const char* intents;
        bool hasProfile;
        std::vector<int> errors;
    } rows[] = {
        // The second is not opened: it would raise something.
        {"[<< /DestOutputProfile 5 0 R >> << /DestOutputProfile 6 0 R >>]", true, {}},
        {"[<< /DestOutputProfile 6 0 R >> << /DestOutputProfile 5 0 R >>]", true, {Error::UnimplementedColourProfile}},
        {"[<< /DestOutputProfile 6 0 R >>]", false, {Error::UnimplementedColourProfile}},
        {"[<< /OutputConditionIdentifier (No such condition) >>]", false, {}},
        {"[]", false, {}},
        {"7", false, {Error::General}},
        {"null", false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.intents);
        const Intents intents(row.intents, {good, bad});
        EXPECT_TRUE(intents.document.isOpen);
        EXPECT_EQ(static_cast<bool>(intents.factory.GetOutputProfile()), row.hasProfile);
        EXPECT_EQ(intents.document.GetErrors(), row.errors);
    }
}

TEST(OutputIntentTest, IsForgottenWithItsFile)
{
    Intents intents("[<< /DestOutputProfile 5 0 R >>]", {PdfBuilder::MakeStream(MakeTestProfile("CMYK"))});
    ASSERT_TRUE(intents.factory.GetOutputProfile());
    const std::string plain = MakePagePdf("");
    ASSERT_TRUE(intents.document->OpenMemory(plain.data(), plain.size()));
    EXPECT_FALSE(intents.factory.GetOutputProfile());
    EXPECT_FALSE(intents.factory.deviceCmyk->GetICCProfile());
}

} // namespace
} // namespace Quillet
