#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "framework/api/EnumText.h"
#include "framework/api/Enums.h"
#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IBrep.h"
#include "framework/api/ICamera.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/ISketch.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

// The texts by which a scene names the values of its enumerations, for readers and writers; those of units are in
// framework/api/UnitText.h.

inline constexpr EnumText<PropertyTypeEnum> kPropertyTypeTexts[] = {
    {"kString", kPropertyType_String}, {"kInt", kPropertyType_Int},   {"kDouble", kPropertyType_Double},
    {"kBool", kPropertyType_Bool},     {"kTime", kPropertyType_Time},
};

// Kept: spelled with one r, with two it is another word; and the other kind has no text.
inline constexpr EnumText<ExtensionDataContent::ObjectPathTypeEnum> kObjectPathTypeTexts[] = {
    {"kObjectPathTypeEnum_OccurancePath", ExtensionDataContent::kObjectPathType_Occurrence},
};

inline constexpr EnumText<IBrep::ProducerGeometryTypeEnum> kProducerGeometryTypeTexts[] = {
    {"kProducerGeometryType_Unknown", IBrep::kProducerGeometryType_Unknown},
    {"kProducerGeometryType_BrepMixed", IBrep::kProducerGeometryType_BrepMixed},
    {"kProducerGeometryType_BrepSolid", IBrep::kProducerGeometryType_BrepSolid},
    {"kProducerGeometryType_BrepSheet", IBrep::kProducerGeometryType_BrepSheet},
    {"kProducerGeometryType_Surface", IBrep::kProducerGeometryType_Surface},
    {"kProducerGeometryType_BrepWire", IBrep::kProducerGeometryType_BrepWire},
    {"kProducerGeometryType_Curve", IBrep::kProducerGeometryType_Curve},
};

inline constexpr EnumText<IPolygonMesh::PolygonMeshTypeEnum> kPolygonMeshTypeTexts[] = {
    {"kPolygonMeshType_Regular", IPolygonMesh::kPolygonMeshType_Regular},
    {"kPolygonMeshType_Triangular", IPolygonMesh::kPolygonMeshType_Triangular},
    {"kPolygonMeshType_Strip", IPolygonMesh::kPolygonMeshType_Strip},
    {"kPolygonMeshType_Fan", IPolygonMesh::kPolygonMeshType_Fan},
};

inline constexpr EnumText<ISketch::SketchTypeEnum> kSketchTypeTexts[] = {
    {"kSketchType_2D", ISketch::kSketchType_2D},
    {"kSketchType_3D", ISketch::kSketchType_3D},
};

inline constexpr EnumText<ICamera::CameraTypeEnum> kCameraTypeTexts[] = {
    {"kCameraType_Parallel", ICamera::kCameraType_Parallel},
    {"kCameraType_Perspective", ICamera::kCameraType_Perspective},
};

inline constexpr EnumText<IRenderStyle::PointStyleMarkerTypeEnum> kPointStyleMarkerTypeTexts[] = {
    {"kPointStyleMarkerType_Dot", IRenderStyle::kPointStyleMarkerType_Dot},
    {"kPointStyleMarkerType_X", IRenderStyle::kPointStyleMarkerType_X},
    {"kPointStyleMarkerType_Plus", IRenderStyle::kPointStyleMarkerType_Plus},
    {"kPointStyleMarkerType_Asterisk", IRenderStyle::kPointStyleMarkerType_Asterisk},
    {"kPointStyleMarkerType_Square", IRenderStyle::kPointStyleMarkerType_Square},
    {"kPointStyleMarkerType_Triangle", IRenderStyle::kPointStyleMarkerType_Triangle},
    {"kPointStyleMarkerType_Circle", IRenderStyle::kPointStyleMarkerType_Circle},
    {"kPointStyleMarkerType_Diamond", IRenderStyle::kPointStyleMarkerType_Diamond},
    {"kPointStyleMarkerType_FilledSquare", IRenderStyle::kPointStyleMarkerType_FilledSquare},
    {"kPointStyleMarkerType_FilledTriangle", IRenderStyle::kPointStyleMarkerType_FilledTriangle},
    {"kPointStyleMarkerType_FilledCircle", IRenderStyle::kPointStyleMarkerType_FilledCircle},
    {"kPointStyleMarkerType_FilledDiamond", IRenderStyle::kPointStyleMarkerType_FilledDiamond},
};

inline constexpr EnumText<IRenderStyle::CurveStyleFontTypeEnum> kCurveStyleFontTypeTexts[] = {
    {"kCurveStyleFontType_Continuous", IRenderStyle::kCurveStyleFontType_Continuous},
    {"kCurveStyleFontType_ISO_Dash", IRenderStyle::kCurveStyleFontType_ISO_Dash},
    {"kCurveStyleFontType_ISO_DashSpace", IRenderStyle::kCurveStyleFontType_ISO_DashSpace},
    {"kCurveStyleFontType_ISO_LongDashDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashDot},
    {"kCurveStyleFontType_ISO_LongDashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashDoubleDot},
    {"kCurveStyleFontType_ISO_LongDashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashTripleDot},
    {"kCurveStyleFontType_ISO_Dot", IRenderStyle::kCurveStyleFontType_ISO_Dot},
    {"kCurveStyleFontType_ISO_LongDashShortDash", IRenderStyle::kCurveStyleFontType_ISO_LongDashShortDash},
    {"kCurveStyleFontType_ISO_LongDashDoubleShortDash", IRenderStyle::kCurveStyleFontType_ISO_LongDashDoubleShortDash},
    {"kCurveStyleFontType_ISO_DashDot", IRenderStyle::kCurveStyleFontType_ISO_DashDot},
    {"kCurveStyleFontType_ISO_DoubleDashDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashDot},
    {"kCurveStyleFontType_ISO_DashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_DashDoubleDot},
    {"kCurveStyleFontType_ISO_DoubleDashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashDoubleDot},
    {"kCurveStyleFontType_ISO_DashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_DashTripleDot},
    {"kCurveStyleFontType_ISO_DoubleDashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashTripleDot},
};

inline constexpr EnumText<IRenderStyle::CurveStyleFillTypeEnum> kCurveStyleFillTypeTexts[] = {
    {"kCurveStyleFillType_Solid", IRenderStyle::kCurveStyleFillType_Solid},
};

/// Tells an observer of a text, and of those that would have been understood.
template <class Enum, std::size_t kSize>
KVR_ASIDE void TellEnumText(ReadObserver& observer, EnumText<Enum> const (&rows)[kSize], XMLCh const* text,
                            bool isKnown)
{
    std::array<std::string_view, kSize> texts;
    std::transform(std::begin(rows), std::end(rows), texts.begin(), [](auto const& row) { return row.text; });
    TextReading reading;
    reading.text = text;
    reading.form = TextForm::kEnumeration;
    reading.isUnderstood = isKnown;
    reading.texts = texts;
    observer.TextRead(reading);
}

/// The value that a text of the document names, of which an observer is told; null names none. False, with the output
/// left alone, for any text of none.
template <class Enum, std::size_t kSize>
[[nodiscard]] bool ValueOfDocumentText(EnumText<Enum> const (&rows)[kSize], XMLCh const* text, Enum& value)
{
    bool const isKnown = ValueOfText(rows, text, value);
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        TellEnumText(*observer, rows, text, isKnown);
    return isKnown;
}

}  // namespace KVR
