// A scene document of any content through a check of all rules: accounts agree, and findings stand in the file.

#include <cstdlib>
#include <string>

#include "framework/api/UTF8String.h"
#include "fuzz/InputFile.h"
#include "inspect/Check.h"

namespace
{

using namespace KVR;

bool IsInFile(Finding const& finding, std::string const& path, std::size_t size)
{
    return finding.file != path || (finding.begin <= finding.end && finding.end <= size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Fuzz::InputFile const file("scene.xml");
    file.Write(data, size);
    std::string const path(UTF8String(file.Path()).View());
    CheckOptions options;
    options.account = true;
    CheckResult const result = CheckScene(path, options);
    for (Account const& account : result.accounts)
    {
        if (!account.Agrees())
            std::abort();
    }
    for (Finding const& finding : result.findings)
    {
        if (!finding.rule || !IsInFile(finding, path, size))
            std::abort();
        for (Edit const& edit : finding.fix)
        {
            if (edit.begin > edit.end || edit.end > size)
                std::abort();
        }
    }
    return 0;
}
