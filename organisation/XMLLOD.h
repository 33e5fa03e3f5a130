#pragma once

#include <utility>

#include "framework/api/ILod.h"
#include "framework/xml_util/ObjectState.h"

namespace KVR
{

/// A level of detail: a name and a description. ReadLodSet makes it.
class XMLLOD : public ObjectState<ILod>
{
public:
    explicit XMLLOD(UTF8String id);
    ~XMLLOD() override;

    UTF16String Description() const override { return m_description; }

    void SetLabel(UTF16String const& label) { m_label = UTF8String(label); }
    void SetDescription(UTF16String description) noexcept { m_description = std::move(description); }

private:
    UTF16String m_description;
};

}  // namespace KVR
