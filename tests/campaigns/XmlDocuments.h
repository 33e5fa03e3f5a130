#pragma once

#include <string>
#include <vector>

namespace KVR::Campaigns
{

/// A document that attacks the parser or its reader, and what has to come of it.
struct XmlDocument
{
    std::string name;
    std::string bytes;
    /// Whether it is read for a host that trusts nobody (DocumentPolicy::Untrusted), as the program kvr does.
    bool isReadUntrusted;
    /// Whether it is read under the default policy; nothing is tried under that which would ask the network.
    bool isReadByDefault;
    bool asksNetwork = false;
};

/// At least 150 of them. Those that name a file name `secret`, which has the mark "@secret@" in it.
std::vector<XmlDocument> XmlDocuments(std::string const& secret);

}  // namespace KVR::Campaigns
