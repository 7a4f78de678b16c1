#pragma once

#include <Quillet/Ref.h>

#include <Kernel/Countable.h>

#include <memory>
#include <unordered_set>

namespace Quillet {

/// The document's default configuration of optional content: which groups it hides or locks.
class QUILLET_API OCProperties : public Kernel::Countable
{
public:
    /// `ref` is the catalog's entry, and may be null: then nothing is hidden or locked.
    explicit OCProperties(const Ref& ref);

    /// `group` is the reference of an optional-content group.
    bool IsHidden(const Ref& group) const;
    bool IsLocked(const Ref& group) const;

    /// The configuration dictionary; may be null.
    Ref defaultConfig;

private:
    struct Configuration
    {
        using Groups = std::unordered_set<Ref::Place, Ref::PlaceHash>;

        bool isBaseOff = false;
        Groups off;
        Groups on;
        Groups locked;
    };
    using Lists = std::shared_ptr<const Configuration>;

    Lists GetLists() const;

    /// Read when a page first asks; null until then.
    mutable Lists kept;
};

} // namespace Quillet
