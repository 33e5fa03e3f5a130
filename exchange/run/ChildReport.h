#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/Progress.h"

namespace KVR
{

/// What a child process tells: a stream of records, each with its kind, its length and a check of all of it, that ends
/// with a result or a failure. Whatever stands in the stream does no harm: what is damaged, cut short or goes on behind
/// its end is no whole report.
class ChildReport
{
public:
    enum class Kind : unsigned char
    {
        kProgress = 1,
        kRemark,
        kFailure,
        kResult,
        /// What is being worked on, or nothing.
        kSubject
    };

    /// A record as bytes. A text may be anything; that of progress is ProgressText's.
    static std::string Record(Kind kind, std::string_view text);
    static std::string ProgressText(ProgressReport const& report);

    /// Takes bytes as they arrive, in pieces of any size, and tells `progress` of each record of that kind. False when
    /// that does not want to go on.
    bool Take(std::string_view bytes, Progress const& progress);

    /// Whether it came to its end, undamaged.
    bool IsWhole() const noexcept { return m_hasEnded && !m_isDamaged && m_pending.empty(); }
    /// The latest that was told; a stage without a name before the first.
    ProgressReport const& LastProgress() const noexcept { return m_progress; }
    std::string const& LastSubject() const noexcept { return m_subject; }
    std::vector<std::string> const& Remarks() const noexcept { return m_remarks; }
    /// What ended it: one of the two, when it is whole.
    std::optional<std::string> const& Failure() const noexcept { return m_failure; }
    std::optional<std::string> const& Result() const noexcept { return m_result; }

private:
    bool TakeRecord(Kind kind, std::string_view text, Progress const& progress);

    /// The beginning of a record that is not complete.
    std::string m_pending;
    bool m_hasEnded = false;
    bool m_isDamaged = false;
    ProgressReport m_progress;
    std::string m_subject;
    std::vector<std::string> m_remarks;
    std::optional<std::string> m_failure;
    std::optional<std::string> m_result;
};

}  // namespace KVR
