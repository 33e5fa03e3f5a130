#pragma once

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

/// How an element reads a boolean attribute. Like elements differ, in the test and in what absence means; each reader
/// names its form by one of the constants below.
struct BooleanForm
{
    bool (*test)(XMLCh const* text);
    bool ifAbsent;
};

inline constexpr BooleanForm kBoolean_OneElseFalse = {[](XMLCh const* text) { return Equals(text, u"1"); }, false};
inline constexpr BooleanForm kBoolean_IntegerOneElseFalse = {
    [](XMLCh const* text) { return XMLStrUtil::XMLStrToInt(text) == 1; }, false};
inline constexpr BooleanForm kBoolean_TrueWordElseFalse = {[](XMLCh const* text) { return Equals(text, u"True"); },
                                                           false};

/// Visibility of an instance, of a sketch, and of an occurrence that an assembly overrides.
// Kept: absence means hidden here.
inline constexpr BooleanForm kVisibility_OneElseHidden = kBoolean_OneElseFalse;

/// Visibility of curves, points, point clouds and work features.
// Kept: absence means shown here, unlike in an instance.
inline constexpr BooleanForm kVisibility_OneElseHiddenAbsentShown = {
    [](XMLCh const* text) { return Equals(text, u"1"); }, true};

/// The attribute's answer in the given form.
inline bool ReadBoolean(xercesc::DOMNode const* node, AttributeName name, BooleanForm const& form)
{
    XMLCh const* const text = AttributeText(node, name);
    return text ? ToldBoolean(text, form.test) : form.ifAbsent;
}

}  // namespace KVR
