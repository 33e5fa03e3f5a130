#pragma once

#include "framework/xml_util/Export.h"

namespace KVR
{

/// The one place where XMLPlatformUtils::Initialize and Terminate are paired: a successful Acquire calls for one
/// Release, on which everything that Xerces gave must be gone.
class KVR_XML_UTIL_API XMLPlatform
{
public:
    /// False, with nothing acquired, when Xerces cannot be initialised.
    [[nodiscard]] static bool Acquire() noexcept;
    /// Takes back one successful Acquire; the last one ends everything that Xerces gave.
    static void Release() noexcept;
};

/// Holds the platform for the length of a scope.
class KVR_XML_UTIL_API XMLPlatformScope
{
public:
    XMLPlatformScope() noexcept : m_isAcquired(XMLPlatform::Acquire()) {}
    ~XMLPlatformScope()
    {
        if (m_isAcquired)
            XMLPlatform::Release();
    }
    XMLPlatformScope(XMLPlatformScope const&) = delete;
    XMLPlatformScope& operator=(XMLPlatformScope const&) = delete;

    /// Whether Xerces could be initialised, so that it may be used in this scope.
    bool IsAcquired() const noexcept { return m_isAcquired; }

private:
    bool m_isAcquired;
};

}  // namespace KVR
