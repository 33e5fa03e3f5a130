#pragma once

#include <streambuf>

namespace KVR
{

class Output;

/// Hands on what a stream is given, as it is. Throws OutputError as Output does; a stream passes that on when its
/// exceptions are enabled.
class OutputBuffer final : public std::streambuf
{
public:
    explicit OutputBuffer(Output& out) : m_out(out) {}

protected:
    int_type overflow(int_type byte) override;
    std::streamsize xsputn(char const* bytes, std::streamsize count) override;

private:
    Output& m_out;
};

}  // namespace KVR
