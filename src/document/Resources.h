#pragma once

#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>
#include <Quillet/RefCacheable.h>

#include <Kernel/Counted.h>
#include <Kernel/Font.h>
#include <Kernel/NonCounted.h>

#include "document/XObjectType.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Quillet {

class ColourSpace;
class ColourSpaceFactory;
class Dictionary;
class Font;
class XObject;

/// Named access to one resource dictionary. What it holds of colours, fonts and external objects is made in the rooms
/// that know them.
///
/// Each sub-dictionary is indexed when first asked, and each colour space is built once a name: a form that is drawn
/// thousands of times looks things up in an object that knows them already.
class QUILLET_API Resources : public Kernel::Countable, public ErrorForwarder
{
public:
    /// `dictionaryRef` may be null: such resources hold nothing.
    explicit Resources(const Ref& dictionaryRef);
    ~Resources() override;

    const Ref& GetRef() const { return ref; }
    /// A new dictionary on the reference.
    Kernel::Counted<Dictionary> GetDictionary() const;

    /// The sub-dictionaries, never null. They are shared: any read moves their cursor.
    Kernel::Counted<Dictionary> GetColourSpaces() const;
    Kernel::Counted<Dictionary> GetXObjects() const;
    Kernel::Counted<Dictionary> GetFonts() const;
    std::vector<std::string> GetXObjectKeys() const;

    /// The document's; null for resources without a document.
    Kernel::NonCounted<ColourSpaceFactory> GetColourSpaceFactory() const;

    /// Null for an unknown name and for a space that cannot be built; the latter has raised what is wrong, once.
    Kernel::Counted<const ColourSpace> GetColourSpace(const std::string& name) const;
    /// Null for an unknown name and for an object that cannot be made. Nothing is raised for either.
    Kernel::Counted<const XObject> GetXObject(const std::string& name, XObjectType::Type type) const;
    /// Null for an unknown name.
    Kernel::Counted<const Font> GetFont(const std::string& name) const;
    /// Appends what these fonts ask for; those in `seen` are left out, and all join it.
    void AddFonts(std::vector<Kernel::Font>& list, std::unordered_set<const Font*>& seen) const;
    /// The graphics state parameters under `name`, or a null reference.
    Ref GetExtGStateRef(const std::string& name) const;
    /// The property list under `name`, or null. It is shared: any read moves its cursor.
    Kernel::Counted<Dictionary> GetProperties(const std::string& name) const;

    /// The same dictionary as an object of its own, made once.
    ///
    /// For colour spaces that look names up later: this object keeps them, so they cannot keep it.
    Kernel::Counted<const Resources> GetTwin() const;

    Ref ref;

private:
    Kernel::Counted<const ColourSpace> MakeColourSpace(const std::string& name) const;
    Kernel::Counted<Dictionary> GetSubDictionary(Kernel::Counted<Dictionary>& place, const char* key) const;

    mutable Kernel::Counted<Dictionary> colourSpaceDictionary;
    mutable Kernel::Counted<Dictionary> xObjectDictionary;
    mutable Kernel::Counted<Dictionary> fontDictionary;
    mutable Kernel::Counted<Dictionary> extGStateDictionary;
    mutable Kernel::Counted<Dictionary> propertiesDictionary;
    /// Colour spaces, of which this room knows no more.
    mutable std::unordered_map<std::string, Kernel::Counted<const RefCacheable>> colourSpaces;
    mutable std::unordered_map<std::string, Kernel::Counted<Dictionary>> properties;
    mutable Kernel::Counted<const Resources> twin;
};

} // namespace Quillet
