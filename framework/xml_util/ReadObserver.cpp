#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{
thread_local ReadObserver* t_observer = nullptr;
}  // namespace

std::atomic<int> ReadObserverScope::count{0};

ReadObserver::ReadObserver() = default;
ReadObserver::~ReadObserver() = default;

void ReadObserver::AttributeAsked(xercesc::DOMNode const*, XMLCh const*, long, XMLCh const*) {}
void ReadObserver::AllAttributesTaken(xercesc::DOMNode const*) {}
void ReadObserver::ChildrenWalked(xercesc::DOMNode const*) {}
void ReadObserver::NamesTried(xercesc::DOMNode const*, std::span<std::u16string_view const>, std::size_t) {}
void ReadObserver::RowsTried(xercesc::DOMNode const* child, std::span<std::u16string_view const> names,
                             std::size_t matched)
{
    NamesTried(child, names, matched);
}
void ReadObserver::TextTaken(xercesc::DOMNode const*, XMLCh const*) {}
void ReadObserver::TextRead(TextReading const&) {}
void ReadObserver::ObjectRegistered(xercesc::DOMNode const*, IObject const&, bool) {}
void ReadObserver::IdTaken(xercesc::DOMNode const*, UTF8String const&) {}
void ReadObserver::ElementDropped(xercesc::DOMNode const*, DropReason) {}
void ReadObserver::ChildFailed(xercesc::DOMNode const*, xercesc::DOMNode const*, bool, bool) {}
void ReadObserver::NodeNoted(xercesc::DOMNode const*, xercesc::DOMNode const*) {}
void ReadObserver::NodeBegun(xercesc::DOMNode const*) {}
void ReadObserver::NodeEnded(xercesc::DOMNode const*) {}
void ReadObserver::NodeAsked(UTF8String const&, ReferenceEnd) {}
void ReadObserver::ReferenceMet(xercesc::DOMNode const*, UTF8String const&, bool) {}
void ReadObserver::SectionMet(xercesc::DOMNode const*, UTF16String const&, SectionState) {}
void ReadObserver::LastCounts(xercesc::DOMNode const*) {}
void ReadObserver::RecordRead(StoreRecord const&) {}
void ReadObserver::StoreLeft(unsigned long long, unsigned long long, unsigned long long) {}
void ReadObserver::RecordsClaimed(unsigned long long) {}
void ReadObserver::TableRead(unsigned long long, unsigned long long) {}
void ReadObserver::StoreFailed(StoreFailure, std::string_view) {}
void ReadObserver::PropertyMet(PropertyTexts const&, bool) {}
void ReadObserver::PropertyHanded(bool, bool) {}

void ReadObserver::TryName(xercesc::DOMNode const* element, XMLCh const* name, bool isMatch)
{
    m_tried.emplace_back(name);
    if (isMatch)
        TellTried(element, m_tried.size() - 1);
}

void ReadObserver::TellTried(xercesc::DOMNode const* element, std::size_t matched)
{
    NamesTried(element, m_tried, matched);
    m_tried.clear();
}

ReadObserver* ReadObserver::OfThread() noexcept
{
    return t_observer;
}

ReadObserverScope::ReadObserverScope(ReadObserver& observer) noexcept : m_former(t_observer)
{
    t_observer = &observer;
    count.fetch_add(1, std::memory_order_relaxed);
}

ReadObserverScope::~ReadObserverScope()
{
    count.fetch_sub(1, std::memory_order_relaxed);
    t_observer = m_former;
}

}  // namespace KVR
