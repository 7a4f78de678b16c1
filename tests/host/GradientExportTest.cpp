#include "CommandRun.h"
#include "support/PdfBuilder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <string>

namespace Host::Test {
namespace {

using Json = nlohmann::json;

class GradientExportTest : public CommandRun
{
public:
    std::string Convert(const std::string& content, const std::string& out)
    {
        folder.Put("FILE", Quillet::MakePagePdf(content, {.resources = "", .entries = "/MediaBox [0 0 100 100]"}));
        EXPECT_EQ(Run({"convert", "FILE", "-o", out}), 0) << problems;
        return folder.Read(out);
    }

    /// Strips of red turning to blue, 40 points high, from (10, 20) on.
    static std::string MakeStrips()
    {
        std::string content;
        for (int i = 0; i <= 20; ++i) {
            const std::string share = std::to_string(i * 0.05);
            content +=
                std::to_string(1 - i * 0.05) + " 0 " + share + " rg " + std::to_string(10 + 4 * i) + " 20 4 40 re f\n";
        }
        return content;
    }
};

TEST_F(GradientExportTest, WritesRecognisedGradients)
{
    const Json json = Json::parse(Convert(MakeStrips(), "OUT.json"));
    Json object = json["pages"][0]["root"];
    while (object.contains("children")) {
        ASSERT_EQ(object["children"].size(), 1);
        const Json child = object["children"][0];
        object = child;
    }
    const Json fill = object["fill"];
    EXPECT_EQ(fill["kind"], "linear");
    ASSERT_GE(fill["stops"].size(), 2);
    EXPECT_EQ(fill["stops"].front()["position"], 0);
    EXPECT_EQ(fill["stops"].front()["colour"]["values"], Json({1, 0, 0}));
    EXPECT_EQ(fill["stops"].back()["position"], 1);
    EXPECT_EQ(fill["stops"].back()["colour"]["values"], Json({0, 0, 1}));
    // From the unit square to the page, y downward.
    EXPECT_EQ(fill["transform"], Json({84, 0, 0, 40, 10, 40}));

    pugi::xml_document svg;
    const std::string text = Convert(MakeStrips(), "OUT.svg");
    ASSERT_TRUE(svg.load_string(text.c_str())) << text;
    const auto gradient = svg.select_node("//linearGradient").node();
    EXPECT_STREQ(gradient.attribute("x2").value(), "1");
    EXPECT_STREQ(gradient.attribute("gradientTransform").value(), "matrix(84 0 0 40 10 40)");
    EXPECT_STREQ(gradient.first_child().attribute("stop-color").value(), "#ff0000");
    EXPECT_STREQ(gradient.last_child().attribute("stop-color").value(), "#0000ff");
    EXPECT_EQ(svg.select_node("//path").node().attribute("fill").value(),
              "url(#" + std::string(gradient.attribute("id").value()) + ")");
}

} // namespace
} // namespace Host::Test
