#include "exchange/import/InstanceStyles.h"

#include <TDF_AttributeSequence.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_GraphNode.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "exchange/import/StyleTable.h"

namespace KVR
{

namespace
{

// An occurrence is a chain of usages, each the child of the placement that it passes through. More than this are a
// damaged document's.
constexpr std::size_t kMostLevels = 1000;

struct Usage
{
    TDF_Label label;
    Authoring::OccurrencePath path;
    UTF8String style;
};

std::string PathText(Authoring::OccurrencePath const& path)
{
    std::string text;
    for (UTF8String const& id : path)
        text += (text.empty() ? "" : "/") + std::string(id.View());
    return text;
}

}  // namespace

std::vector<std::pair<Authoring::OccurrencePath, std::vector<UTF8String>>> InstanceStyles(ProductPlan const& plan,
                                                                                          ComponentPlan const& assembly,
                                                                                          StyleTable& styles,
                                                                                          Losses& losses)
{
    std::vector<std::pair<Authoring::OccurrencePath, std::vector<UTF8String>>> result;
    for (std::size_t i = 0; i < assembly.instances.size(); ++i)
    {
        UTF8String const& id = assembly.instances[i].id;
        TDF_Label const& origin = assembly.origins[i].label;
        if (UTF8String const style = styles.StyleOf(origin, false); !style.IsEmpty())
            result.push_back({{id}, {style}});
        TDF_AttributeSequence usages;
        XCAFDoc_ShapeTool::GetAllComponentSHUO(origin, usages);
        std::vector<Usage> work;
        for (Handle(TDF_Attribute) const& attribute : usages)
        {
            TDF_LabelSequence upper;
            // A usage within a longer one is met on the way down from that.
            if (!XCAFDoc_ShapeTool::GetSHUOUpperUsage(attribute->Label(), upper) || upper.IsEmpty())
                work.push_back({attribute->Label(), {id}, {}});
        }
        while (!work.empty())
        {
            Usage usage = std::move(work.back());
            work.pop_back();
            if (UTF8String const style = styles.StyleOf(usage.label, false); !style.IsEmpty())
                usage.style = style;
            TDF_LabelSequence nexts;
            XCAFDoc_ShapeTool::GetSHUONextUsage(usage.label, nexts);
            if (nexts.IsEmpty() && !usage.style.IsEmpty())
                result.push_back({usage.path, {usage.style}});
            for (TDF_Label const& label : nexts)
            {
                UTF8String const next = plan.IdOf(label.Father());
                if (next.IsEmpty() || usage.path.size() >= kMostLevels)
                {
                    losses.AddItem("styles of occurrences that are no objects", PathText(usage.path));
                    continue;
                }
                Usage below{label, usage.path, usage.style};
                below.path.push_back(next);
                work.push_back(std::move(below));
            }
        }
    }
    return result;
}

}  // namespace KVR
