#include "producer/XMLProducerOptions.h"

namespace KVR
{

struct XMLProducerOptions::Flags
{
    bool wantLayer = true;
    bool wantRestoreInsecure = false;
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

}  // namespace KVR
