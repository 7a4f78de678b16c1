#include <Kernel/LocalisedString.h>

#include <gtest/gtest.h>

namespace {

using Kernel::LocalisedString;

TEST(LocalisedString, SpeaksTheTableThatIsSetNow)
{
    const LocalisedString page("Page %1", "Print");
    const LocalisedString other("Other", "Print");
    const auto made = LocalisedString::CreateFakeFromString("Page %1");
    EXPECT_EQ(page.ToString(), "Page %1");
    LocalisedString::SetTable([](const std::string& key, const std::string& context) {
        // A table may ask in its turn.
        if (key == "Page %1") return "Seite %1 (" + LocalisedString(context, "").ToString() + ")";
        return key == "Print" ? std::string("Druck") : std::string();
    });
    EXPECT_EQ(page.ToString(), "Seite %1 (Druck)");
    EXPECT_EQ(other.ToString(), "Other");
    EXPECT_EQ(made.ToString(), "Page %1");
    LocalisedString::SetTable(nullptr);
    EXPECT_EQ(static_cast<std::string>(page), "Page %1");
}

} // namespace
