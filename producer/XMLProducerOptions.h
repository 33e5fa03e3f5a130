#pragma once

#include <functional>
#include <memory>

#include "framework/api/BaseOptions.h"
#include "framework/api/UTF16String.h"
#include "producer/Export.h"

namespace KVR
{

struct StoreNeeds;

/// What a host may choose about the reading of a scene. The host owns the options; they must outlive the producer that
/// was given them.
class KVR_XML_PRODUCER_API XMLProducerOptions : public BaseOptions
{
public:
    XMLProducerOptions();
    ~XMLProducerOptions() override;
    XMLProducerOptions(XMLProducerOptions const&) = delete;
    XMLProducerOptions& operator=(XMLProducerOptions const&) = delete;

    /// Whether the host wants layers; true until set. Stored and reported: layers are read in any case.
    bool WantLayer() const noexcept;
    /// Sets what WantLayer answers.
    void SetWantLayer(bool want) noexcept;

    /// Whether kernel stores that the kernel judges insecure are restored all the same; false until set. Leave it off
    /// for files that you do not trust.
    bool WantRestoreInsecureGMKFiles() const noexcept;
    /// Sets whether they are; to be called before BeginProcess.
    void SetWantRestoreInsecureGMKFiles(bool want) noexcept;

    /// Is told the full path of a file.
    using FileHandler = std::function<void(UTF16String const& path)>;

    /// Who is told, during BeginProcess, of each side file that an info section names and that cannot be opened, before
    /// it is looked at, or that the system ceases to give; nobody until set. What it throws ends BeginProcess.
    void SetUnreadSideFileHandler(FileHandler handler);
    /// What was set; may be empty.
    FileHandler const& UnreadSideFileHandler() const noexcept;

private:
    friend struct StoreNeeds;
    struct Flags;

    StoreNeeds const& Needs() const noexcept;
    void SetNeeds(StoreNeeds const& needs);
    std::unique_ptr<Flags> m_flags;
};

}  // namespace KVR
