#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace KVR
{

/// Makes the classic locale global for the length of a scope, and the former one again at its end. It is global to the
/// process.
class ClassicLocaleScope
{
public:
    ClassicLocaleScope()
        : m_formerOfC(std::setlocale(LC_ALL, nullptr)), m_former(std::locale::global(std::locale::classic()))
    {
    }
    ~ClassicLocaleScope()
    {
        std::locale::global(m_former);
        std::setlocale(LC_ALL, m_formerOfC.c_str());
    }
    ClassicLocaleScope(ClassicLocaleScope const&) = delete;
    ClassicLocaleScope& operator=(ClassicLocaleScope const&) = delete;

private:
    // Making a locale global sets the C library's as well, which need not have been the same before.
    std::string m_formerOfC;
    std::locale m_former;
};

}  // namespace KVR
