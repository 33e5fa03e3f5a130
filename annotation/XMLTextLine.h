#pragma once

#include <memory>
#include <optional>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "annotation/XMLTextFragment.h"

namespace KVR
{

class XMLTextLine : public ITextLine
{
public:
    XMLTextLine();
    ~XMLTextLine() override;

    unsigned long long FragmentCount() const override { return m_fragments.size(); }
    ITextFragment* FragmentAt(unsigned long long index) const override;
    IsValueSpecifiedEnum TextAlignment(int& alignment) const override;
    IsValueSpecifiedEnum Indentation(double& indentation) const override;

    /// Fills the object from an "ITextLine" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode const* node);

private:
    std::vector<std::unique_ptr<XMLTextFragment>> m_fragments;
    std::optional<int> m_textAlignment;
    std::optional<double> m_indentation;
};

}  // namespace KVR
