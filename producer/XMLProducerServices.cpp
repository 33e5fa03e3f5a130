// What the producer offers to its readers: id mapping and text tables.

#include "framework/api/StringUtil.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

namespace
{

template <class Enum>
struct TextRow
{
    wchar_t const* text;
    Enum value;
};

constexpr TextRow<IRenderStyle::PointStyleMarkerTypeEnum> kPointMarkerTypes[] = {
    {L"kPointStyleMarkerType_Dot", IRenderStyle::kPointStyleMarkerType_Dot},
    {L"kPointStyleMarkerType_X", IRenderStyle::kPointStyleMarkerType_X},
    {L"kPointStyleMarkerType_Plus", IRenderStyle::kPointStyleMarkerType_Plus},
    {L"kPointStyleMarkerType_Asterisk", IRenderStyle::kPointStyleMarkerType_Asterisk},
    {L"kPointStyleMarkerType_Square", IRenderStyle::kPointStyleMarkerType_Square},
    {L"kPointStyleMarkerType_Triangle", IRenderStyle::kPointStyleMarkerType_Triangle},
    {L"kPointStyleMarkerType_Circle", IRenderStyle::kPointStyleMarkerType_Circle},
    {L"kPointStyleMarkerType_Diamond", IRenderStyle::kPointStyleMarkerType_Diamond},
    {L"kPointStyleMarkerType_FilledSquare", IRenderStyle::kPointStyleMarkerType_FilledSquare},
    {L"kPointStyleMarkerType_FilledTriangle", IRenderStyle::kPointStyleMarkerType_FilledTriangle},
    {L"kPointStyleMarkerType_FilledCircle", IRenderStyle::kPointStyleMarkerType_FilledCircle},
    {L"kPointStyleMarkerType_FilledDiamond", IRenderStyle::kPointStyleMarkerType_FilledDiamond},
};

constexpr TextRow<IRenderStyle::CurveStyleFontTypeEnum> kCurveFontTypes[] = {
    {L"kCurveStyleFontType_Continuous", IRenderStyle::kCurveStyleFontType_Continuous},
    {L"kCurveStyleFontType_ISO_Dash", IRenderStyle::kCurveStyleFontType_ISO_Dash},
    {L"kCurveStyleFontType_ISO_DashSpace", IRenderStyle::kCurveStyleFontType_ISO_DashSpace},
    {L"kCurveStyleFontType_ISO_LongDashDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashDot},
    {L"kCurveStyleFontType_ISO_LongDashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashDoubleDot},
    {L"kCurveStyleFontType_ISO_LongDashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_LongDashTripleDot},
    {L"kCurveStyleFontType_ISO_Dot", IRenderStyle::kCurveStyleFontType_ISO_Dot},
    {L"kCurveStyleFontType_ISO_LongDashShortDash", IRenderStyle::kCurveStyleFontType_ISO_LongDashShortDash},
    {L"kCurveStyleFontType_ISO_LongDashDoubleShortDash", IRenderStyle::kCurveStyleFontType_ISO_LongDashDoubleShortDash},
    {L"kCurveStyleFontType_ISO_DashDot", IRenderStyle::kCurveStyleFontType_ISO_DashDot},
    {L"kCurveStyleFontType_ISO_DoubleDashDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashDot},
    {L"kCurveStyleFontType_ISO_DashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_DashDoubleDot},
    {L"kCurveStyleFontType_ISO_DoubleDashDoubleDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashDoubleDot},
    {L"kCurveStyleFontType_ISO_DashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_DashTripleDot},
    {L"kCurveStyleFontType_ISO_DoubleDashTripleDot", IRenderStyle::kCurveStyleFontType_ISO_DoubleDashTripleDot},
};

constexpr TextRow<IRenderStyle::CurveStyleFillTypeEnum> kCurveFillTypes[] = {
    {L"kCurveStyleFillType_Solid", IRenderStyle::kCurveStyleFillType_Solid},
};

template <class Rows, class Enum>
bool FindText(Rows const& rows, UTF16String const& text, Enum& value)
{
    for (auto const& row : rows)
    {
        if (text.Compare(row.text) == 0)
        {
            value = row.value;
            return true;
        }
    }
    return false;
}

}  // namespace

bool XMLProducerImpl::MapObjectId(UTF8String const& id, UTF8String& mapped)
{
    if (!HasNewObjectIdPrefix())
        return false;
    auto const [place, isNew] = m_objectIdMap->try_emplace(id);
    if (isNew)
    {
        ++m_newObjectIdCounter;
        place->second = StringUtil::FromUnsignedlong(m_newObjectIdCounter, "%lu");
        place->second.Insert(0, m_newObjectIdPrefix);
    }
    mapped = place->second;
    return true;
}

void XMLProducerImpl::ApplyIdMapping(UTF8String& id)
{
    UTF8String mapped;
    if (MapObjectId(id, mapped))
        id = mapped;
}

bool XMLProducerImpl::QueryMappedObject(UTF8String const& id, UTF8String& mapped) const
{
    if (!objectCollector)
        return false;
    mapped = id;
    if (HasNewObjectIdPrefix())
    {
        auto const found = m_objectIdMap->find(id);
        if (found == m_objectIdMap->end())
            return false;
        mapped = found->second;
    }
    return objectCollector->HasObject(mapped);
}

bool XMLProducerImpl::PointMarkerType(UTF16String const& text, IRenderStyle::PointStyleMarkerTypeEnum& type)
{
    return FindText(kPointMarkerTypes, text, type);
}

bool XMLProducerImpl::CurveFontType(UTF16String const& text, IRenderStyle::CurveStyleFontTypeEnum& type)
{
    return FindText(kCurveFontTypes, text, type);
}

bool XMLProducerImpl::CurveFillType(UTF16String const& text, IRenderStyle::CurveStyleFillTypeEnum& type)
{
    return FindText(kCurveFillTypes, text, type);
}

HISTORY_STREAM* XMLProducerImpl::GetHistoryStream()
{
    if (!m_historyStream)
    {
        HISTORY_STREAM* stream = nullptr;
        GMKHistoryUtil::CreateHistoryStream(stream);
        m_historyStream.reset(stream);
    }
    return m_historyStream.get();
}

void XMLProducerImpl::EndHistoryStream::operator()(HISTORY_STREAM* stream) const noexcept
{
    GMKHistoryUtil::DeleteHistoryStream(stream);
}

}  // namespace KVR
