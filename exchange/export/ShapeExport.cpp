#include <fcntl.h>
#include <unistd.h>

#include <Standard_Failure.hxx>
#include <cerrno>
#include <stdexcept>

#include "exchange/export/BrepFile.h"
#include "exchange/export/Export.h"
#include "exchange/export/Formats.h"
#include "exchange/export/ShapeDocument.h"
#include "exchange/export/ShapeDocumentBuilder.h"
#include "exchange/export/StepFile.h"
#include "output/Output.h"
#include "output/OutputError.h"

namespace KVR
{

namespace
{

// A new file, closed with the object.
class NewFile
{
public:
    explicit NewFile(std::string const& path)
        : m_descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
    {
        if (m_descriptor < 0)
            throw OutputError(errno);
    }
    ~NewFile() { ::close(m_descriptor); }
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    int Descriptor() const noexcept { return m_descriptor; }

private:
    int m_descriptor;
};

template <class Writer>
void WriteShapes(ExportTask& task, Writer write)
{
    try
    {
        ShapeDocument document(task.notCarried);
        ShapeDocumentBuilder(task, document).Build();
        NewFile const file(task.path);
        Output out(file.Descriptor());
        write(document, out);
    }
    catch (Standard_Failure const& failure)
    {
        char const* const message = failure.GetMessageString();
        throw std::runtime_error(std::string("Open CASCADE refuses it: ") +
                                 (message && *message ? message : failure.DynamicType()->Name()));
    }
}

}  // namespace

void ExportStep(ExportTask& task)
{
    WriteShapes(task, [](ShapeDocument& document, Output& out) { WriteStepFile(document, out); });
}

void ExportBrep(ExportTask& task)
{
    WriteShapes(task, [](ShapeDocument& document, Output& out) { WriteBrepFile(document, out); });
}

}  // namespace KVR
