#pragma once

#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Makes a C locale current for the calling thread, and the former one again at its end. The empty name stands for the
/// "C" locale; an unknown name changes nothing. It must end on the thread that it began on.
class KVR_API LocaleHelper
{
public:
    explicit LocaleHelper(UTF8String const& name);
    ~LocaleHelper();
    LocaleHelper(LocaleHelper const&) = delete;
    LocaleHelper& operator=(LocaleHelper const&) = delete;

private:
    void* m_current = nullptr;
    void* m_former = nullptr;
};

}  // namespace KVR
