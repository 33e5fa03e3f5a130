#pragma once

#include <string_view>

namespace KVR
{

class Output;

/// Text about objects, in colour where that is wanted.
class PaintedText
{
public:
    // What is painted how: codes of terminals.
    static constexpr std::string_view kKind = "36";
    static constexpr std::string_view kId = "2";
    static constexpr std::string_view kHidden = "33";
    static constexpr std::string_view kBold = "1";
    static constexpr std::string_view kItalic = "3";
    static constexpr std::string_view kPlain = "0";

    /// Writes to `out`, which must outlive this.
    PaintedText(Output& out, bool inColor) : m_out(out), m_inColor(inColor) {}

    /// Paints what follows so.
    void Paint(std::string_view code);
    /// Kind, label and id, as an object is named everywhere.
    void PutObject(std::string_view kind, std::string_view label, std::string_view id);
    /// ", visible" or ", hidden", and the end.
    void PutVisibility(bool isVisible, std::string_view end);

private:
    Output& m_out;
    bool m_inColor;
};

}  // namespace KVR
