#pragma once

#include <Quillet/Ref.h>

#include <Kernel/Countable.h>

#include <map>
#include <tuple>

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
    struct Answer
    {
        bool isHidden = false;
        bool isLocked = false;
    };

    const Answer& GetAnswer(const Ref& group) const;
    Answer ReadAnswer(const Ref& group) const;

    /// A configuration lists its groups in arrays, and pages name the same few groups over and over. The key is the
    /// reference: position, number, generation, and whether it is a whole object.
    mutable std::map<std::tuple<unsigned long long, int, int, bool>, Answer> answers;
};

} // namespace Quillet
