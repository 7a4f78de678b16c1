#pragma once

#include "content/ContentContext.h"
#include "content/GeneralOperators.h"

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>

#include <memory>

namespace Quillet {

class ArgVec;
class GraphicsStateStack;
class GroupObject;
class Page;
class Parser;
class RasterFormatPicker;
class SequentialSource;

/// Runs one content stream, once, against a stack of graphics states: a loop over tokens around the stack's table of
/// operators.
///
/// Unknown keywords end the operand list and are passed over without a report. The abort flag is read once per
/// operator.
class QUILLET_API StreamInterpreter
{
public:
    /// For a page's own content, on a stack of its own.
    explicit StreamInterpreter(Kernel::NonCounted<const Page> page);
    /// For a form and the like; a form shares its caller's stack. The device colours are those of the resources that
    /// the stack has now.
    StreamInterpreter(Kernel::Counted<GraphicsStateStack> stack, Kernel::Counted<SequentialSource> source);
    ~StreamInterpreter();
    StreamInterpreter(const StreamInterpreter&) = delete;
    StreamInterpreter& operator=(const StreamInterpreter&) = delete;

    /// Gives the stack an operator, in the place of an earlier one: whatever content runs on it has that.
    void RegisterOperator(const char* keyword, std::unique_ptr<Operator> op);
    /// All that are known.
    void RegisterOperators();

    /// The root of the tree that the stack builds. Null on a second call. Fatal errors pass through.
    Kernel::Counted<GroupObject> Interpret();
    /// Asks every operator for its vote in the choice of a pixel format, and executes none. Uses the interpreter up.
    void AddRasterFormats(RasterFormatPicker& picker);

    /// Reads operands up to an operator, which it returns.
    const Operator* Parse(ArgVec& args);
    /// Takes the parser's current token; null if that was an operand.
    const Operator* ParseObject(ArgVec& args);

    /// Null once the run has ended, as is `stack`.
    Kernel::Counted<Parser> parser;
    Kernel::Counted<GraphicsStateStack> stack;
    /// Stands for the end of the data; never executed.
    OpDefault endOperator;
    /// Stands for everything that is no registered operator.
    OpDefault defaultOperator;

private:
    ContentContext MakeContext() const;
    void RegisterSpecialOps();
    void RegisterGraphicStateOps();
    void RegisterPathOps();
    void RegisterTextOps();
    void RegisterColourOps();
    template <typename Handler, typename... Arguments>
    void Add(const char* keyword, Arguments&&... arguments);

    void ParseArray(ArgVec& args);
    /// Hands each operator to `visit` until the end of the data, an abort or the end of the page's budget.
    template <typename Visit>
    void Run(Visit visit);
    void End();

    ContentContext context;
};

} // namespace Quillet
