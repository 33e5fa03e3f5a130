#include "producer/XMLProducerOptions.h"

#include <utility>

#include "producer/StoreNeeds.h"

namespace KVR
{

struct XMLProducerOptions::Flags
{
    bool wantLayer = true;
    bool wantRestoreInsecure = false;
    FileHandler unreadSideFileHandler;
    StoreNeeds needs;
};

XMLProducerOptions::XMLProducerOptions() : m_flags(std::make_unique<Flags>()) {}
XMLProducerOptions::~XMLProducerOptions() = default;

bool XMLProducerOptions::WantLayer() const noexcept
{
    return m_flags->wantLayer;
}
void XMLProducerOptions::SetWantLayer(bool want) noexcept
{
    m_flags->wantLayer = want;
}
bool XMLProducerOptions::WantRestoreInsecureGMKFiles() const noexcept
{
    return m_flags->wantRestoreInsecure;
}
void XMLProducerOptions::SetWantRestoreInsecureGMKFiles(bool want) noexcept
{
    m_flags->wantRestoreInsecure = want;
}
void XMLProducerOptions::SetUnreadSideFileHandler(FileHandler handler)
{
    m_flags->unreadSideFileHandler = std::move(handler);
}
XMLProducerOptions::FileHandler const& XMLProducerOptions::UnreadSideFileHandler() const noexcept
{
    return m_flags->unreadSideFileHandler;
}

StoreNeeds const& XMLProducerOptions::Needs() const noexcept
{
    return m_flags->needs;
}
void XMLProducerOptions::SetNeeds(StoreNeeds const& needs)
{
    m_flags->needs = needs;
}

StoreNeeds const& StoreNeeds::Of(XMLProducerOptions const* options)
{
    static StoreNeeds const s_all;
    return options ? options->Needs() : s_all;
}

}  // namespace KVR
