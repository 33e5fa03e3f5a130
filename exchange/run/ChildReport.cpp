#include "exchange/run/ChildReport.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace KVR
{

namespace
{

// The kind, the length of the text, and the check of both and the text. Both ends are one program: the byte order is
// the machine's.
constexpr std::size_t kHeadSize = 1 + sizeof(std::uint32_t) + sizeof(std::uint32_t);
constexpr std::size_t kLengthPlace = 1;
constexpr std::size_t kCheckPlace = kLengthPlace + sizeof(std::uint32_t);
// No text is longer: a longer one is a damaged length.
constexpr std::uint32_t kMostText = std::uint32_t{256} * 1024 * 1024;

// FNV-1a, which no change of a single byte leaves as it is.
std::uint32_t CheckOf(std::string_view head, std::string_view text)
{
    std::uint32_t check = 2166136261U;
    for (std::string_view const part : {head, text})
        for (char const byte : part)
            check = (check ^ static_cast<unsigned char>(byte)) * 16777619U;
    return check;
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t place)
{
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

void PutNumber(std::string& bytes, std::uint32_t number)
{
    bytes.append(reinterpret_cast<char const*>(&number), sizeof number);
}

ProgressReport ProgressOf(std::string_view text)
{
    ProgressReport report;
    std::size_t const blank = std::min(text.find(' '), text.size());
    double fraction = 0.0;
    if (std::from_chars(text.data(), text.data() + blank, fraction).ec == std::errc())
        report.fraction = fraction;
    report.stage = text.substr(std::min(blank + 1, text.size()));
    return report;
}

}  // namespace

std::string ChildReport::Record(Kind kind, std::string_view text)
{
    std::string record(1, static_cast<char>(kind));
    PutNumber(record, static_cast<std::uint32_t>(text.size()));
    PutNumber(record, CheckOf(record, text));
    return record.append(text);
}

std::string ChildReport::ProgressText(ProgressReport const& report)
{
    // A number, or nothing, before the first blank.
    std::array<char, 32> number;
    char* const end =
        report.fraction ? std::to_chars(number.begin(), number.end(), *report.fraction).ptr : number.begin();
    return std::string(number.begin(), end) + ' ' + report.stage;
}

bool ChildReport::Take(std::string_view bytes, Progress const& progress)
{
    m_pending.append(bytes);
    std::string_view rest = m_pending;
    bool goesOn = true;
    while (goesOn && !m_isDamaged && rest.size() >= kHeadSize)
    {
        std::uint32_t const length = NumberAt(rest, kLengthPlace);
        m_isDamaged = m_hasEnded || length > kMostText;
        if (m_isDamaged || rest.size() - kHeadSize < length)
            break;
        std::string_view const text = rest.substr(kHeadSize, length);
        m_isDamaged = CheckOf(rest.substr(0, kCheckPlace), text) != NumberAt(rest, kCheckPlace);
        if (!m_isDamaged)
            goesOn = TakeRecord(static_cast<Kind>(rest.front()), text, progress);
        rest.remove_prefix(kHeadSize + length);
    }
    // What follows damage could be anything.
    m_pending = m_isDamaged ? std::string() : std::string(rest);
    return goesOn;
}

bool ChildReport::TakeRecord(Kind kind, std::string_view text, Progress const& progress)
{
    switch (kind)
    {
        case Kind::kProgress:
            m_progress = ProgressOf(text);
            return !progress || progress(m_progress);
        case Kind::kRemark:
            m_remarks.emplace_back(text);
            return true;
        case Kind::kSubject:
            m_subject = text;
            return true;
        case Kind::kFailure:
        case Kind::kResult:
            (kind == Kind::kFailure ? m_failure : m_result) = text;
            m_hasEnded = true;
            return true;
    }
    m_isDamaged = true;
    return true;
}

}  // namespace KVR
