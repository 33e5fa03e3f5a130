#pragma once

#include <map>
#include <memory>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Color.h"
#include "framework/api/IUniverse.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/api/Variant.h"
#include "framework/api/ViewingData.h"

namespace KVR
{

class XMLUniverse : public IUniverse
{
public:
    /// The scene file's path, from which the paths of blobs are taken.
    explicit XMLUniverse(UTF16String const& sceneFilePath);
    ~XMLUniverse() override;

    IsValueSpecifiedEnum DefaultCurveColor(Color& color) const override;
    IsValueSpecifiedEnum DefaultSurfaceColor(Color& color) const override;
    IsValueSpecifiedEnum ViewingDataOf(ViewingData& viewingData) const override;
    unsigned long long CustomDataCount() const override { return m_customDataKeys.size(); }
    IsValueSpecifiedEnum CustomDataAt(unsigned long long index, UTF8String& key, Variant& value) const override;
    PropertyDatabase* PropertyDatabaseOf() const override { return m_propertyDatabase.get(); }

    /// Fills the object from an "IUniverse" element; false for a null node. A blob whose file is missing or short
    /// throws FileException.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    void ReadViewData(xercesc::DOMNode const* node);
    void ReadCustomData(xercesc::DOMNode const* node);
    void ReadCustomDataItem(xercesc::DOMNode const* item);
    bool ReadBlob(xercesc::DOMNode const* item, Variant& value) const;

    std::unique_ptr<PropertyDatabase> m_propertyDatabase;
    UTF16String m_sceneFilePath;
    std::unique_ptr<ViewingData> m_viewingData;
    Color m_defaultCurveColor;
    bool m_hasDefaultCurveColor = false;
    Color m_defaultSurfaceColor;
    bool m_hasDefaultSurfaceColor = false;
    /// Every accepted key in document order, repeats included.
    std::vector<UTF8String> m_customDataKeys;
    /// The first value of each key; a key may have none.
    std::map<UTF8String, Variant> m_customData;
};

}  // namespace KVR
