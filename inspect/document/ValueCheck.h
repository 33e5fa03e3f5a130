#pragma once

#include <string>

#include "inspect/SceneCheck.h"

namespace KVR
{

struct Misreading;

/// Adds a finding about a text of the document, or of another file, that was misread. `label` says what it is the text
/// of: an attribute's name, or nothing.
class ValueCheck
{
public:
    explicit ValueCheck(SceneCheck& check) : m_check(check) {}

    /// The spot is that of the text.
    void Add(Spot const& spot, std::string const& label, std::string const& text, Misreading const& misread);
    /// Null when the rule is not wanted.
    Finding* AddIn(std::string const& file, std::string const& label, std::string const& text,
                   Misreading const& misread);

private:
    struct Verdict
    {
        Rule const* rule = nullptr;
        std::string readAs;
        std::string meant;
        /// Whether what was meant is safe to put in its place.
        bool isSafe = false;
    };

    static Verdict Judge(std::string const& text, Misreading const& misread);
    static Verdict JudgeTransform(std::string const& text, Misreading const& misread);
    static Verdict JudgeNumber(std::string const& text);

    SceneCheck& m_check;
};

}  // namespace KVR
