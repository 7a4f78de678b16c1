#pragma once

#include "document/ArgVec.h"
#include "fonts/FontEncoding.h"

#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>

#include <Kernel/Counted.h>

#include <string>

namespace Quillet {

class Dictionary;
class Parser;
class PdfSource;

/// Reads a CMap (ISO 32000-2, 9.7.5.4): a PostScript program, of which only the operators that define something are
/// understood, and nothing is run.
class QUILLET_API CMapInterpreter : public ErrorForwarder
{
public:
    /// What a stream of the file says; kept with the object.
    static Kernel::Counted<const FontEncoding> GetEncoding(const Ref& ref);

    // Each reads the whole CMap.
    explicit CMapInterpreter(const Ref& ref);
    explicit CMapInterpreter(Kernel::Counted<PdfSource> source);
    ~CMapInterpreter() override;

    Kernel::Counted<Parser> parser;
    Kernel::Counted<FontEncoding> encoding;
    /// Of the code space ranges that follow.
    int currentFont = 0;
    /// A CMap uses one other at most.
    bool hasBase = false;
    bool isEmbedded = false;

private:
    /// Takes the CMap that the dictionary of the stream names or refers to.
    void UseBase(Dictionary& dictionary);
    void UseStandard(const std::string& name);
    void Interpret();
    bool ParseObject(ArgVec& args, std::string& op);
    void Execute(const std::string& op, const ArgVec& args);
    void OnDef(const ArgVec& args);
    void OnEndBfChar(const ArgVec& args);
    void OnEndCidChar(const ArgVec& args);
    void OnEndBfRange(const ArgVec& args);
    void OnEndCodeSpaceRange(const ArgVec& args);
};

} // namespace Quillet
