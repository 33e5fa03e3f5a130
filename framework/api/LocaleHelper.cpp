#include "framework/api/LocaleHelper.h"

#include <clocale>

#if !defined(_WIN32)
#include <locale.h>
#endif

namespace KVR
{

#if defined(_WIN32)

// The thread's own locale here is a mode and a name; the former name is kept on the heap.
LocaleHelper::LocaleHelper(UTF8String const& name)
{
    m_current = reinterpret_cast<void*>(static_cast<std::intptr_t>(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE)));
    m_former = new UTF8String(std::setlocale(LC_ALL, nullptr));
    std::setlocale(LC_ALL, name.IsEmpty() ? "C" : name.Value());
}

LocaleHelper::~LocaleHelper()
{
    auto* const former = static_cast<UTF8String*>(m_former);
    std::setlocale(LC_ALL, former->Value());
    delete former;
    _configthreadlocale(static_cast<int>(reinterpret_cast<std::intptr_t>(m_current)));
}

#else

LocaleHelper::LocaleHelper(UTF8String const& name)
{
    locale_t const made = newlocale(LC_ALL_MASK, name.IsEmpty() ? "C" : name.Value(), nullptr);
    if (!made)
        return;
    m_current = made;
    m_former = uselocale(made);
}

LocaleHelper::~LocaleHelper()
{
    if (!m_current)
        return;
    uselocale(static_cast<locale_t>(m_former));
    freelocale(static_cast<locale_t>(m_current));
}

#endif

}  // namespace KVR
