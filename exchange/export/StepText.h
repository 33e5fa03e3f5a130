#pragma once

#include <cstdint>
#include <streambuf>
#include <string>

namespace KVR
{

class Output;

/// Takes the text of a STEP file and hands it on in ASCII: characters beyond it become the escapes of ISO 10303-21,
/// also where a line break stands within them. A byte that is no UTF-8 becomes U+FFFD. Throws OutputError as Output
/// does.
class StepText final : public std::streambuf
{
public:
    explicit StepText(Output& out) : m_out(out) {}
    /// Ends an open escape; to be called once after the last text.
    void Finish();

protected:
    int_type overflow(int_type byte) override;
    std::streamsize xsputn(char const* bytes, std::streamsize count) override;

private:
    enum class Escape
    {
        kNone,
        kTwoBytes,
        kFourBytes
    };

    void Put(unsigned char byte);
    void PutCharacter(std::uint32_t character);
    void Enter(Escape escape);

    Output& m_out;
    Escape m_escape = Escape::kNone;
    std::uint32_t m_character = 0;
    std::uint32_t m_least = 0;
    int m_missing = 0;
};

}  // namespace KVR
