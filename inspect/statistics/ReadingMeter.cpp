#include "inspect/statistics/ReadingMeter.h"

#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/IObject.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{

// Of this thread: the clock of a process goes by ticks of the system while its processor time is limited.
double ProcessorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

}  // namespace

class ReadingMeter::Listener final : public ReadObserver
{
public:
    explicit Listener(bool hasNewIds) : m_hasNewIds(hasNewIds), m_begin(ProcessorSeconds()), m_last(m_begin)
    {
        m_scope.emplace(*this);
    }

    void Stop()
    {
        if (!m_scope)
            return;
        m_scope.reset();
        m_seconds = ProcessorSeconds() - m_begin;
    }

    void SectionMet(xercesc::DOMNode const*, UTF16String const& path, SectionState state) override
    {
        m_last = ProcessorSeconds();
        m_hasBodies = false;
        if (state == SectionState::kRead)
            m_path = path;
    }

    void RecordRead(StoreRecord const& record) override
    {
        double const now = ProcessorSeconds();
        double const seconds = now - m_last;
        m_last = now;
        if (!record.isKept)
            return;
        Record& entry = m_records[std::string(record.id.View())];
        if (record.end > record.begin)
        {
            entry.bytes += record.end - record.begin;
            entry.seconds += seconds;
            return;
        }
        if (record.kind != "body" && record.kind != "edge")
            return;
        if (!m_hasBodies)
        {
            std::error_code error;
            auto const size =
                std::filesystem::file_size(std::filesystem::path(std::string(UTF8String(m_path).View())), error);
            m_stores.push_back({error ? 0 : static_cast<unsigned long long>(size), 0.0});
            m_hasBodies = true;
        }
        m_stores.back().seconds += seconds;
        entry.store = m_stores.size() - 1;
    }

    void ObjectRegistered(xercesc::DOMNode const* element, IObject const& object, bool isSecond) override
    {
        if (!m_hasNewIds || isSecond || !element)
            return;
        xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
        xercesc::DOMNode const* const id = attributes ? attributes->getNamedItem(u"ID") : nullptr;
        if (id)
            m_oldIds.emplace(object.Id().View(), UTF8String(id->getNodeValue()).View());
    }

    Record const* RecordOf(std::string_view id) const
    {
        std::string key(id);
        if (auto const old = m_oldIds.find(key); old != m_oldIds.end())
            key = old->second;
        auto const found = m_records.find(key);
        return found == m_records.end() ? nullptr : &found->second;
    }

    Store const& StoreAt(std::size_t place) const { return m_stores.at(place); }
    double Seconds() const noexcept { return m_seconds; }

private:
    std::unordered_map<std::string, Record> m_records;
    std::unordered_map<std::string, std::string> m_oldIds;
    std::vector<Store> m_stores;
    UTF16String m_path;
    bool m_hasNewIds;
    bool m_hasBodies = false;
    double m_begin;
    double m_last;
    double m_seconds = 0.0;
    std::optional<ReadObserverScope> m_scope;
};

ReadingMeter::ReadingMeter(bool hasNewIds) : m_listener(std::make_unique<Listener>(hasNewIds)) {}

ReadingMeter::~ReadingMeter() = default;

void ReadingMeter::Stop()
{
    m_listener->Stop();
}

ReadingMeter::Record const* ReadingMeter::RecordOf(std::string_view id) const
{
    return m_listener->RecordOf(id);
}

ReadingMeter::Store const& ReadingMeter::StoreAt(std::size_t place) const
{
    return m_listener->StoreAt(place);
}

double ReadingMeter::Seconds() const noexcept
{
    return m_listener->Seconds();
}

}  // namespace KVR
