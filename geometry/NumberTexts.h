#pragma once

#include <cstddef>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

namespace KVR
{

/// Texts of numbers, one behind the other in one run of characters. They stay text, and each is converted when it is
/// asked for: a list of millions costs its characters and an offset per three texts, and no block of memory per text.
class NumberTexts
{
public:
    /// How many texts are read at once.
    static constexpr std::size_t kRow = 3;

    /// Appends the pieces that stand between blanks, trimmed of tabs and line ends; empty pieces are dropped. A null
    /// text counts as empty.
    void Append(XMLCh const* text);
    /// Gives back memory that the texts did not need; to be called once, behind the last of them.
    void ReleaseSpare();
    std::size_t RowCount() const noexcept { return m_count / kRow; }
    /// Converts the three texts of a row. An output whose text is no number is left alone. The index must be below the
    /// number of rows.
    void ReadRow(std::size_t index, double& x, double& y, double& z) const;

private:
    /// Each text ends with a blank, and holds none.
    std::string m_texts;
    /// Where each row begins, the last and incomplete one included.
    std::vector<std::size_t> m_rows;
    std::size_t m_count = 0;
};

}  // namespace KVR
