#pragma once

#include "content/ClippingAction.h"
#include "content/GraphicsState.h"
#include "content/MarkedContent.h"
#include "content/OperatorCategory.h"
#include "content/OperatorTable.h"
#include "content/PdfPath.h"

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>

#include <memory>
#include <vector>

namespace Quillet {

class ColourSpaceFactory;
struct ContentContext;
class ErrorHandler;
class GroupObject;
class Page;
class Resources;
class TextHandler;

/// What one content run works on, forms included: the states, the path, the open marked content, the current resources
/// and the root of the tree.
class QUILLET_API GraphicsStateStack : public Kernel::Countable
{
public:
    /// For a page's content.
    explicit GraphicsStateStack(Kernel::NonCounted<const Page> page);
    /// For content with a box of its own, such as a pattern cell on `page`.
    GraphicsStateStack(Kernel::NonCounted<const Page> page, const Kernel::RectT<double>& rect);
    ~GraphicsStateStack() override;
    GraphicsStateStack(const GraphicsStateStack&) = delete;
    GraphicsStateStack& operator=(const GraphicsStateStack&) = delete;

    void Save();
    void Push(const GraphicsState& state);
    /// Leaves the top state, unless it belongs to the caller of the form being run.
    void Restore();
    void SaveForXObject();
    /// Leaves all states that the form made.
    void RestoreForXObject();
    /// Takes pending text into the tree.
    void FlushObjects();
    /// Puts a layer behind what is left of `group`, out of which its content was taken. The top state goes on there;
    /// states whose groups went with the content go on beside the layer, under the same clips.
    void PutLayer(const Kernel::Counted<GroupObject>& layer, const Kernel::Counted<GroupObject>& group);

    GraphicsState& GetTop() { return states.back(); }
    const GraphicsState& GetTop() const { return states.back(); }

    void SetResources(Kernel::Counted<const Resources> newResources);
    void OnCompatibility(bool isBegin);
    bool IsInCompatibility() const { return compatibilityCount > 0; }
    void SetCurrentCategory(OperatorCategory::Type category) { currentCategory = category; }
    void SetClippingAction(ClippingAction::Type action) { clippingAction = action; }
    const ErrorHandler* GetErrorHandler() const;
    const bool* GetAbortPointer() const;
    Kernel::NonCounted<ColourSpaceFactory> GetColourSpaceFactory() const;

    /// The last one is the top.
    std::vector<GraphicsState> states;
    Kernel::Counted<const Page> page;
    PdfPath path;
    std::unique_ptr<TextHandler> textHandler;
    Kernel::Counted<GroupObject> root;
    /// Swapped by forms; null for a page without resources.
    Kernel::Counted<const Resources> resources;
    std::vector<MarkedContent> markedContents;
    int compatibilityCount = 0;
    ClippingAction::Type clippingAction = ClippingAction::None;
    int xObjectDepth = 0;
    OperatorCategory::Type currentCategory = OperatorCategory::Page;
    /// One for all content that runs here: a form may run a hundred thousand times on a page.
    OperatorTable operators;
    /// Of the innermost content being run; null outside of a run.
    const ContentContext* context = nullptr;

private:
    void Init(Kernel::NonCounted<const Page> page);
    void SaveInitialState(const Kernel::RectT<double>& crop, const Kernel::RectT<double>& trim,
                          const Kernel::RectT<double>& clip, int rotate);
    void Pop();
};

} // namespace Quillet
