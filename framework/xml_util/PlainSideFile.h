#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/xml_util/SideFileParser.h"

namespace KVR
{

/// Reads an XML side file that is plain, as nearly all are: in UTF-8, of elements with attributes, and of white
/// space and comments between them. What it passes on is what a parser would, in a fifth of the time. It does not
/// judge: at the first thing that is not plain, which may be well-formed or not, it stops, and the file is a parser's.
class PlainSideFile
{
public:
    /// Neither is owned. The file stands at its beginning.
    PlainSideFile(std::FILE* file, SideFileReceiver& receiver);
    PlainSideFile(PlainSideFile const&) = delete;
    PlainSideFile& operator=(PlainSideFile const&) = delete;

    /// Passes on the elements; whether the file was plain, and well-formed, to its end. To be called once.
    bool Read();
    /// How many beginnings and ends of elements were passed on.
    std::uint64_t Told() const noexcept { return m_told; }

private:
    enum class Step
    {
        kTaken,
        kNeedsMore,
        kNotPlain
    };

    // A text between two places in the window, where it can be ended by a zero.
    struct Piece
    {
        XMLCh* begin;
        XMLCh* end;
    };

    static constexpr std::size_t kMostAttributes = 16;
    static constexpr std::size_t kMostOpen = 8;

    bool Fill();
    XMLCh* Decode(unsigned char const* from, unsigned char const* to, XMLCh* out);
    bool PassDeclaration();
    Step TakeTag();
    Step PassComment(XMLCh* at);
    Step TakeBegin(XMLCh* at);
    Step TakeEnd(XMLCh* at);
    Step TakeAttribute(XMLCh*& at);
    bool IsRepeated(Piece const& name) const;
    void TellEnd();
    Step StepAt(XMLCh const* at) const { return at == m_end ? Step::kNeedsMore : Step::kNotPlain; }

    std::FILE* m_file;
    SideFileReceiver& m_receiver;
    std::uint64_t m_told = 0;

    std::vector<unsigned char> m_bytes;
    /// How many bytes stand at the front of m_bytes that were read and not decoded.
    std::size_t m_kept = 0;
    /// What was decoded, and a zero behind its end.
    std::vector<XMLCh> m_text;
    XMLCh* m_next;
    XMLCh* m_end;

    std::array<SideFileAttribute, kMostAttributes> m_attributes{};
    std::array<Piece, kMostAttributes> m_names{};
    std::array<Piece, kMostAttributes> m_values{};
    std::size_t m_attributeCount = 0;
    bool m_hasReferences = false;
    /// The names of the elements that are open.
    std::array<std::u16string, kMostOpen> m_open;
    std::size_t m_openCount = 0;
    bool m_hasRoot = false;
};

}  // namespace KVR
