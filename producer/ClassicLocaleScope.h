#pragma once

#include <locale>

namespace KVR
{

/// Makes the classic locale global for the length of a scope, and the former one again at its end. It is global to the
/// process.
class ClassicLocaleScope
{
public:
    ClassicLocaleScope() : m_former(std::locale::global(std::locale::classic())) {}
    ~ClassicLocaleScope() { std::locale::global(m_former); }
    ClassicLocaleScope(ClassicLocaleScope const&) = delete;
    ClassicLocaleScope& operator=(ClassicLocaleScope const&) = delete;

private:
    std::locale m_former;
};

}  // namespace KVR
