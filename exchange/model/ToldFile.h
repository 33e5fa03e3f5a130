#pragma once

#include <fstream>
#include <functional>
#include <streambuf>
#include <string>
#include <vector>

namespace KVR
{

/// The bytes of a file for whoever reads streams, which tells how much of them has been taken. Carriage returns are
/// left out: in a text of a STEP file the end of a line is nothing, and Open CASCADE takes them for a part of it.
class ToldFile : public std::streambuf
{
public:
    /// So much is read at once, and told.
    static constexpr std::size_t kBlock = 64 * 1024;

    /// `tell` is told a number from 0 to 1. A file that cannot be read has no bytes.
    ToldFile(std::string const& path, std::function<void(double fraction)> tell);

protected:
    int_type underflow() override;

private:
    std::function<void(double)> m_tell;
    std::ifstream m_file;
    std::vector<char> m_block;
    double m_size = 0.0;
    double m_taken = 0.0;
};

}  // namespace KVR
