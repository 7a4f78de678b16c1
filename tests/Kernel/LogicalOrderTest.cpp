#include <Kernel/LogicalOrder.h>

#include <gtest/gtest.h>

#include <string>

namespace {

std::u32string Reorder(const std::u32string& visual)
{
    std::u32string logical;
    for (const Kernel::ReadCharacter& character : Kernel::GetLogicalOrder(visual))
        logical += character.GetFrom(visual);
    return logical;
}

TEST(LogicalOrder, IsThatInWhichALineIsRead)
{
    const struct
    {
        const char* what;
        std::u32string visual;
        std::u32string logical;
    } rows[] = {
        {"left to right", U"ab 12", U""},
        {"one word", U"גבא", U"אבג"},
        {"numbers stay", U"34 גבא", U"אבג 34"},
        {"numbers of both kinds", U"34 12 גבא", U"אבג 12 34"},
        {"a number with a word", U"גבא PDF 1.7 דה", U"הד PDF 1.7 אבג"},
        {"a number in brackets", U"see [12] גבא here", U"see [12] אבג here"},
        {"brackets as they look", U"(בא) דה", U"הד (אב)"},
        {"a full stop at the left", U".גבא דה", U"הד אבג."},
        {"a word in a line that runs to the right", U"the word גבא is here", U"the word אבג is here"},
        {"a name in a line that runs to the left", U"דג Latin גבא", U"אבג Latin גד"},
        {"a tab", U"דג\tגבא", U"אבג\tגד"},
        {"beyond the first plane", U"\U00010401\U0001E900\U0001E901\U0001E902",
         U"\U0001E902\U0001E901\U0001E900\U00010401"},
        {"no characters", {0x110000, U'א', U'ב', 0xFFFFFFFF}, {0xFFFFFFFF, U'ב', U'א', 0x110000}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Reorder(row.visual), row.logical) << row.what;
}

} // namespace
