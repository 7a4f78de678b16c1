#include "StyleNames.h"

#include "exporters/Costs.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/TreeWalk.h>

#include <utility>

namespace Host {

using namespace Quillet;

StyleNames::Names StyleNames::Add(const GroupObject& root)
{
    struct Search : TreePass<>
    {
        Search(StyleNames& usedStyles, Names& found) : styles(usedStyles), names(found) {}

        Step Visit(const Object& object, const std::monostate&) override
        {
            if (object.GetKind() != Object::Kind::Column) return Step::On;
            for (const auto& line : static_cast<const ColumnObject&>(object).lines) {
                if (!Budget::Spend(Costs::c_styleLine)) return Step::End;
                if (!line->isParagraphFront || !line->paragraphAtts) continue;
                if (const auto& list = line->paragraphAtts->GetList()) Take(list->styleName, list->delta);
                if (const auto& cap = line->paragraphAtts->GetDropCap()) Take(cap->styleName, cap->delta);
            }
            return Step::On;
        }

        void Take(const std::string& name, const Kernel::Counted<const Story::Delta>& delta)
        {
            if (!name.empty() && delta && !names.contains(name)) names.emplace(name, styles.Add(name, delta));
        }

        StyleNames& styles;
        Names& names;
    };
    Names names;
    Search search(*this, names);
    WalkTree(root, search);
    return names;
}

const std::string& StyleNames::Add(const std::string& name, const Kernel::Counted<const Story::Delta>& delta)
{
    if (const auto known = sheet->FindByDelta(*delta)) return known->GetName();
    // The number at the end is the copy's own.
    const std::string words = name.substr(0, name.find_last_not_of("0123456789") + 1);
    const auto style = Kernel::MakeCounted<Story::Style>(words + std::to_string(sheet->GetStyles().size() + 1));
    style->SetType(Story::StyleType::Character);
    style->SetDelta(delta);
    const auto interned = Kernel::ConsolidateObjectSacrifice(style);
    sheet->Add(interned, false);
    return interned->GetName();
}

} // namespace Host
