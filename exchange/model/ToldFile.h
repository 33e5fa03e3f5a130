#pragma once

#include <fstream>
#include <functional>
#include <string>

namespace KVR
{

/// The bytes of a file for whoever reads streams in blocks, which tells how much of them has been taken.
class ToldFile : public std::filebuf
{
public:
    /// `tell` is told a number from 0 to 1. A file that cannot be read has no bytes.
    ToldFile(std::string const& path, std::function<void(double fraction)> tell);

protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override;

private:
    std::function<void(double)> m_tell;
    double m_size = 0.0;
    double m_taken = 0.0;
};

}  // namespace KVR
