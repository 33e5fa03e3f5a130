#include "describe/Rows.h"
#include "framework/api/Color.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IText.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Position.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;

constexpr Row kCalloutRows[] = {
    Inherits<IAnnotationCallout, IObject>(),
    Inherits<IAnnotationCallout, IVisible>(),
    List<&IAnnotationCallout::ChildCount, &IAnnotationCallout::ChildAt>("Children").RefersTo(Refers::Child),
    Value<&IAnnotationCallout::AnnotationPlaneId>("AnnotationPlaneId").RefersTo(Refers::Object),
    Value<&IAnnotationCallout::Text>("Text"),
};

constexpr Row kElementRows[] = {
    Inherits<IAnnotationCalloutElement, IObject>(),
    List<&IAnnotationCalloutElement::ChildCount, &IAnnotationCalloutElement::ChildAt>("Children")
        .RefersTo(Refers::Child),
    Value<&IAnnotationCalloutElement::Styles>("Styles").RefersTo(Refers::Set),
};

constexpr Row kTextRows[] = {
    Value<&IText::Origin>("Origin"),
    Value<&IText::Transform>("Transform"),
    Value<&IText::TextJustification>("TextJustification"),
    Value<&IText::IsVertical>("IsVertical"),
    Value<&IText::LengthUnit>("LengthUnit"),
    List<&IText::LineCount, &IText::LineAt>("Lines"),
};

constexpr Row kLineRows[] = {
    Value<&ITextLine::TextAlignment>("TextAlignment"),
    Value<&ITextLine::Indentation>("Indentation"),
    List<&ITextLine::FragmentCount, &ITextLine::FragmentAt>("Fragments"),
};

constexpr Row kFragmentRows[] = {
    Value<&ITextFragment::Value>("Value"),
    Value<&ITextFragment::TextColor>("TextColor"),
    Value<&ITextFragment::TextBackgroundColor>("TextBackgroundColor"),
    Value<&ITextFragment::FontName>("FontName"),
    Value<&ITextFragment::IsBold>("IsBold"),
    Value<&ITextFragment::IsItalic>("IsItalic"),
    Value<&ITextFragment::IsUnderlined>("IsUnderlined"),
    Value<&ITextFragment::IsOverlined>("IsOverlined"),
    Value<&ITextFragment::Height>("Height"),
    Value<&ITextFragment::Width>("Width"),
    Value<&ITextFragment::FontSize>("FontSize"),
    Value<&ITextFragment::Gap>("Gap"),
    Value<&ITextFragment::ScriptType>("ScriptType"),
};

}  // namespace

Interface const TableOf<IAnnotationCallout>::kTable = {"IAnnotationCallout", kCalloutRows, kNamed};
Interface const TableOf<IAnnotationCalloutElement>::kTable = {"IAnnotationCalloutElement", kElementRows, kNamed};
Interface const TableOf<IText>::kTable = {"IText", kTextRows};
Interface const TableOf<ITextLine>::kTable = {"ITextLine", kLineRows};
Interface const TableOf<ITextFragment>::kTable = {"ITextFragment", kFragmentRows};

}  // namespace KVR
