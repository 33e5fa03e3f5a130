#pragma once

#include <memory>
#include <string_view>

namespace KVR
{

/// Listens, in the thread that made it and until it is stopped, to the readers of side files: how much of them each
/// object is, and how long it took.
class ReadingMeter
{
public:
    /// `hasNewIds` where the producer gives objects other ids than the scene has.
    explicit ReadingMeter(bool hasNewIds);
    ~ReadingMeter();
    ReadingMeter(ReadingMeter const&) = delete;
    ReadingMeter& operator=(ReadingMeter const&) = delete;

    /// What was read until here counts; once more has no effect.
    void Stop();

    /// What of side files was read for an object.
    struct Record
    {
        /// Of its records; 0 for a body, whose store is read as a whole.
        unsigned long long bytes = 0;
        /// Processor time, from the end of the record before it to its own.
        double seconds = 0.0;
        /// Of a body, the place of its store; kNoStore for all else.
        std::size_t store = kNoStore;
    };
    static constexpr std::size_t kNoStore = static_cast<std::size_t>(-1);

    /// A store of bodies.
    struct Store
    {
        unsigned long long bytes = 0;
        double seconds = 0.0;
    };

    /// That of the object with this id, as the producer has it; null when nothing was read for it.
    Record const* RecordOf(std::string_view id) const;
    Store const& StoreAt(std::size_t place) const;
    /// Processor time of the thread from the beginning to the end.
    double Seconds() const noexcept;

private:
    class Listener;
    std::unique_ptr<Listener> m_listener;
};

}  // namespace KVR
