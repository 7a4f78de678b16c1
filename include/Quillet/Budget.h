#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>

#include <atomic>

namespace Quillet {

/// What one document may cost: one account for opening it, for its pages, for lists of its fonts, and for what a host
/// writes of it.
///
/// A unit is one byte that is kept or written, or the time in which that is done, some nanoseconds. A document has a
/// base that ends in seconds, and more for each byte of its file: large documents that people make never meet the end
/// of it, small ones that were made to fill the memory or to run for ever do. What was cut says so: `Error::CutShort`.
///
/// Work is paid for within a scope, and only there; without one nothing is limited. The library opens a scope in each
/// operation that reads the file, hosts open one around what they make of a page. A refusal is nothing that is thrown:
/// whoever is refused stops, with what there is.
class QUILLET_API Budget : public Kernel::Countable
{
public:
    /// For a file of that many bytes.
    static Kernel::Counted<Budget> ForFile(unsigned long long fileBytes);

    explicit Budget(long long units) : left(units) {}

    /// Units that nobody has spent yet; never below 0.
    long long GetLeft() const;
    /// Whether anybody was refused something.
    bool WasCut() const { return isCut.load(std::memory_order_relaxed); }

    enum class Share {
        All,  ///< Whatever the account has: for what the document keeps for all of its pages.
        Page, ///< The larger part of it, so that one page leaves something for the others, and a tree for its writer.
    };

    /// The work of this thread draws on `account` from here to the end of the block. Scopes nest: the inner one has a
    /// share of what the outer one has left.
    class QUILLET_API Scope
    {
    public:
        /// A null account limits nothing. Once `abort` points to true, all is refused; it may be null.
        Scope(Kernel::Counted<const Budget> account, Share share, const bool* abort);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        /// Whether more was asked for than there was. What was stopped by the host was not cut.
        bool WasCut() const { return isCut && !IsAborted(); }

    private:
        friend class Budget;

        bool Take(long long units);
        bool IsRefusing() const { return isCut || IsAborted(); }
        bool IsAborted() const;
        /// Books on the account what was spent here since the last time.
        void Settle();
        void Cut();

        const Kernel::Counted<const Budget> account;
        const bool* const abort;
        Scope* const outer;
        const bool isOuterPaying;
        long long left;
        long long spent = 0;
        long long unsettled = 0;
        bool isCut;
    };

    /// Sets the scopes of this thread aside. What the process builds once for all documents is neither paid for nor cut
    /// short by the document that asks for it first.
    class QUILLET_API Reprieve
    {
    public:
        Reprieve();
        ~Reprieve();
        Reprieve(const Reprieve&) = delete;
        Reprieve& operator=(const Reprieve&) = delete;

    private:
        Scope* const held;
    };

    /// Takes from the scope of this thread; false if that has no more, or if the host wants the work to stop.
    static bool Spend(unsigned long long units);
    /// Whether the next `Spend` is refused: what was built last may be cut short.
    static bool IsSpent();

private:
    mutable std::atomic<long long> left;
    mutable std::atomic<bool> isCut = false;
};

} // namespace Quillet
