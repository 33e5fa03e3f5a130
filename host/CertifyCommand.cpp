#include "host/CertifyCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "exchange/CertifyModel.h"
#include "host/CommonOptions.h"
#include "host/LongWork.h"
#include "host/certify/CertifyTexts.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// Through links, too. Files that are not there are not the same.
bool IsSameFile(std::string const& one, std::string const& other)
{
    std::error_code error;
    return fs::equivalent(one, other, error) && !error;
}

}  // namespace

CertifyCommand::CertifyCommand(CLI::App& program)
    : Command(
          program, "certify",
          "Make a scene of a model, export it to STEP and GLB, read all of them back, and show whether they hold the "
          "same. The exit status is 1 when they do not")
{
    Arguments()
        .add_option("model", m_model, "The model's file; \"-\" is standard input")
        ->required()
        ->type_name("MODEL");
    AddJsonOption(Arguments(), m_asJson);
    Arguments()
        .add_option("--against", m_other, "Compare the model with this file, whatever made it, and with nothing else")
        ->type_name("FILE");
    Arguments()
        .add_option("--html", m_page, "Write a page with the table, all differences and pictures of both sides")
        ->type_name("FILE");
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Show no progress and no remarks");
}

ExitStatus CertifyCommand::Run()
{
    CertifyOptions options;
    options.withPictures = !m_page.empty();
    options.timeout = m_timeout;
    if (IsSameFile(m_page, m_model) || IsSameFile(m_page, m_other))
    {
        Complain(Escaped(m_page) + ": the page would take the place of what is compared");
        return kExit_Failed;
    }
    CertifyResult const result = Watched(!m_isQuiet,
                                         [&](Progress const& progress)
                                         {
                                             return m_other.empty()
                                                        ? CertifyModel(m_model, options, progress)
                                                        : CertifyAgainst(m_model, m_other, options, progress);
                                         });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result, "interrupted");
    if (!m_isQuiet && !m_asJson)
        for (std::string const& remark : result.remarks)
            Complain(Escaped(m_model) + ": " + Escaped(remark));
    if (!m_page.empty() && !WritePage(result))
        return kExit_Failed;
    Output out(STDOUT_FILENO);
    out.Put(m_asJson ? CertifyJson(m_model, result) : CertifyTable(result));
    out.Flush();
    return result.isEqual ? kExit_Good : kExit_Failed;
}

// The page appears whole, or what was there stays. What is no regular file, such as a terminal, is written to.
bool CertifyCommand::WritePage(CertifyResult const& result) const
{
    std::error_code error;
    auto const status = fs::status(m_page, error);
    bool const isInPlace = fs::exists(status) && !fs::is_regular_file(status);
    std::string const path = isInPlace ? m_page : m_page + ".part";
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << CertifyPage(m_model, result);
    file.close();
    error.clear();
    if (file && !isInPlace)
        fs::rename(path, m_page, error);
    if (file && !error)
        return true;
    if (!isInPlace)
        fs::remove(path, error);
    Complain(Escaped(m_page) + ": the page cannot be written");
    return false;
}

}  // namespace KVR
